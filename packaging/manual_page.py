#!/usr/bin/python3 -B
"""Makes a tool's manual page from its --help, so that there is one text to keep right.

Usage: manual_page.py PROGRAM VERSION DATE [SUMMARY]  with SUMMARY for a help that has no NAME
"""

import re
import subprocess
import sys

Option = re.compile(r"^ {2,4}(-[^\s,]*(?:, --\S+)?(?: (?:[A-Z]\S*|\S*\|\S*))?)(?:\s+(.*))?$")
Heading = re.compile(r"^(?:([A-Z ]+)|(\w+):)$")  # NAME, or Examples:
Subheading = re.compile(r"^  (\S.*)$")
Table = re.compile(r"\S {2,}\S")
Label = re.compile(r"[A-Z]\w*(?: \w+)?: ")  # begins a line of its own


def escaped(text):
    return re.sub(r"^([.'])", r"\\&\1", text.replace("\\", r"\e").replace("-", r"\-"))


def table(lines):
    return [".nf", *map(escaped, lines), ".fi"]


def explanation(lines):
    """What an option does: running text, in which rows of a table stay rows."""
    out = []
    for line in lines:
        out += table([line]) if Table.search(line) else [escaped(line)]
    return out


def block(lines, verbatim):
    """Lines between empty ones: options, a table, or a paragraph."""
    out, text, options = [], [], []
    if not any(map(Option.match, lines)):
        indents = [len(line) - len(line.lstrip()) for line in lines]
        if verbatim or max(indents) > min(indents) or any(Table.search(line.strip()) for line in lines):
            return [".PP", *table([line[min(indents):] for line in lines])]
        out.append(".PP")
        for line in map(str.strip, lines):
            out += [".br", escaped(line)] if Label.match(line) else [escaped(line)]
        return out
    for line in lines:
        option = Option.match(line)
        if option:
            options.append((option[1], [option[2]] if option[2] else []))
        elif options and line.startswith("      "):
            options[-1][1].append(line.strip())
        elif Subheading.match(line):
            out += [*flush(options), f'.SS "{line.strip()}"']
            options = []
        else:
            text.append(escaped(line.strip()))
    return [*out, *([".PP", *text] if text else []), *flush(options)]


def flush(options):
    out = []
    for name, lines in options:
        out += [".TP", r"\fB" + escaped(name) + r"\fR", *explanation(lines)]
    return out


def page(name, version, date, text, summary):
    verbatim = False
    out = [f'.TH {name.upper()} 1 "{date}" "Toravane {version}" "User Commands"', ".ad l"]
    if summary:
        out += [".SH NAME", escaped(f"{name} - {summary}"), ".SH SYNOPSIS"]
        usage, text = text.split("\n", 1)
        out += [escaped(usage.removeprefix("Usage: ")), ".SH DESCRIPTION"]
    for paragraph in re.split(r"\n\s*\n", text.strip("\n")):
        lines = paragraph.split("\n")
        heading = Heading.match(lines[0])
        if heading:
            out.append(f'.SH {(heading[1] or heading[2]).upper()}')
            lines = lines[1:]
            verbatim = out[-1] == ".SH EXAMPLES"
        if lines:
            found = block(lines, verbatim)
            out += found[1:] if heading and found[0] == ".PP" else found
    return "\n".join(out) + "\n"


if __name__ == "__main__":
    program, version, date, *summary = sys.argv[1:]
    text = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
    print(page(program.rsplit("/", 1)[-1], version, date, text, *(summary or [""])), end="")
