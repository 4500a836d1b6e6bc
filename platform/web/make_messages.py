#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Generates the code of both sides for the messages between page and program, from messages.json.

Usage: make_messages.py MESSAGES RESOURCE_IDS DIRECTORY

Writes into the directory:
  messages.h    C++: a function for each message to the page, and declarations of the handlers of the others
  messages.cpp  C++: their encoding and the dispatch
  messages.js   the same list for program.js
  messages.d.ts types of the page's methods and of the program's, for the type check of the page
  ids.js        the numbers of commands, dialogs and controls, by their names
"""
import json
import pathlib
import re
import sys

# Type of a field: its letter in messages.js, its TypeScript type, its C++ parameter.
TYPES = {
    "number": ("n", "number", "int32_t"),
    "boolean": ("b", "boolean", "bool"),
    "string": ("s", "string", "const std::wstring&"),
    "texts": ("t", "string[]", "const std::vector<std::wstring>&"),
    "numbers": ("m", "number[]", "const std::vector<int32_t>&"),
    "bytes": ("y", "Uint8Array<ArrayBuffer>", "std::string_view"),
    "pixels": ("p", "Uint8ClampedArray<ArrayBuffer>", "std::string_view"),
}
NOTE = "Made from messages.json by make_messages.py."


def capital(name):
    return name[0].upper() + name[1:]


def parameters(message):
    return ", ".join(f"{TYPES[kind][2]} {name}" for name, kind in message["fields"])


def cpp_header(messages):
    lines = [f"// {NOTE}", "#pragma once", "", "#include <cstdint>", "#include <string>", "#include <string_view>",
             "#include <vector>", "", "namespace web", "{", "", "// To the page."]
    for message in messages["toPage"]:
        lines += [f"void ToPage{capital(message['name'])}({parameters(message)});"]
    lines += ["", "// To the program: what takes each message."]
    for message in messages["toProgram"]:
        lines += [f"void On{capital(message['name'])}({parameters(message)});"]
    lines += ["", "// Takes one message as program.js has encoded it; false if it is none.",
              "bool Receive(std::string_view message);", "", "} // namespace web", ""]
    return "\n".join(lines)


def cpp_source(messages):
    lines = [f"// {NOTE}", '#include "messages.h"', "", '#include "platform/web/encoding.h"', "", "namespace web", "{", ""]
    for number, message in enumerate(messages["toPage"]):
        lines += [f"void ToPage{capital(message['name'])}({parameters(message)})", "{",
                  f"    Send({number}{''.join(', ' + name for name, _ in message['fields'])});", "}", ""]
    lines += ["bool Receive(std::string_view message)", "{", "    Fields fields(message);",
              "    switch (fields.Number()) {"]
    for number, message in enumerate(messages["toProgram"]):
        lines += [f"    case {number}: {{"]
        for name, kind in message["fields"]:
            lines += [f"        const auto {name} = fields.{capital(kind)}();"]
        arguments = ", ".join(name for name, _ in message["fields"])
        lines += ["        if (fields.Bad()) return false;", f"        On{capital(message['name'])}({arguments});",
                  "        return true;", "    }"]
    lines += ["    default: return false;", "    }", "}", "", "} // namespace web", ""]
    return "\n".join(lines)


def script(messages):
    lines = [f"// {NOTE}", "// Name of each message and a letter for the type of each field."]
    for direction in ("toPage", "toProgram"):
        rows = [[message["name"], "".join(TYPES[kind][0] for _, kind in message["fields"])]
                for message in messages[direction]]
        lines += ["/** @type {[string, string][]} */", f"export const {direction} = {json.dumps(rows)};"]
    return "\n".join(lines) + "\n"


def types(messages):
    lines = [f"// {NOTE}", "", "export const toPage: [string, string][];", "export const toProgram: [string, string][];"]
    for direction, interface in (("toPage", "Page"), ("toProgram", "Program")):
        lines += ["", f"export interface {interface} {{"]
        for message in messages[direction]:
            fields = ", ".join(f"{name}: {TYPES[kind][1]}" for name, kind in message["fields"])
            lines += [f"    /** {message['what']} */", f"    {message['name']}({fields}): void;"]
        if interface == "Program":
            lines += ["    /** The program never runs again. */", "    stop(): void;"]
        lines += ["}"]
    return "\n".join(lines) + "\n"


def ids(header):
    """Evaluates the sums in resource_ids.h in their order."""
    values = {}
    for name, expression in re.findall(r"^#define\s+(\w+)\s+(.+?)\s*(?://.*)?$", header, re.MULTILINE):
        if re.fullmatch(r"[\w\s+()-]+", expression):
            values[name] = eval(expression, {"__builtins__": {}}, values)  # our own file: only names and sums
    if not values:
        sys.exit("no numbers in the resource header")
    return f"// {NOTE}\n" + "".join(f"export const {name} = {value};\n" for name, value in values.items())


def main():
    source, header, directory = map(pathlib.Path, sys.argv[1:])
    messages = json.loads(source.read_text(encoding="utf-8"))
    directory.mkdir(parents=True, exist_ok=True)
    made = {
        "messages.h": cpp_header(messages),
        "messages.cpp": cpp_source(messages),
        "messages.js": script(messages),
        "messages.d.ts": types(messages),
        "ids.js": ids(header.read_text(encoding="utf-8")),
    }
    for name, text in made.items():
        (directory / name).write_text(text, encoding="utf-8")


main()
