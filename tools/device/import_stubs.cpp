// SPDX-License-Identifier: MIT
#include "import_stubs.h"

#include "little_endian.h"

#include <algorithm>
#include <set>
#include <sstream>

namespace device
{

namespace
{

// The callee may be ARM or Thumb code, and the processor may have no BX: then BX is skipped, because the
// callee is ARM code. The slot's section also links the zero that ends the library's slots.
constexpr const char* Stub = R"(
  .section .text.import.NAME, "ax", %progbits
  .global NAME
  .type NAME, %function
NAME:
  ldr ip, 1f
  ldr ip, [ip]
  tst ip, #1
  moveq pc, ip
  .inst 0xe12fff1c @ bx ip
1:
  .word "import!LIBRARY!EXPORTED"
  .section ".import.LIBRARY.EXPORTED", "aw", %progbits
  .global "import!LIBRARY!EXPORTED"
"import!LIBRARY!EXPORTED":
  .word 0
  .reloc ., R_ARM_NONE, "import_end!LIBRARY"
)";

constexpr const char* Header = R"(@ Made from a list of exports.
  .syntax unified
  .arch armv4t
  .arm
)";

// '~' sorts after all names.
constexpr const char* End = R"(
  .section ".import.LIBRARY.~", "aw", %progbits
  .global "import_end!LIBRARY"
"import_end!LIBRARY":
  .word 0
)";

std::string Filled(std::string text, const std::string& library, const std::string& exported,
                   const std::string& name)
{
    const std::pair<std::string_view, const std::string&> values[] = {
        {"LIBRARY", library}, {"EXPORTED", exported}, {"NAME", name}};
    for (const auto& [word, value] : values)
        for (size_t at = 0; (at = text.find(word, at)) != std::string::npos; at += value.size())
            text.replace(at, word.size(), value);
    return text;
}

bool IsName(const std::string& text, const char* alsoAllowed = "")
{
    return !text.empty() && std::ranges::all_of(text, [&](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
               std::string_view(alsoAllowed).find(c) != std::string_view::npos;
    });
}

} // namespace

std::string MakeImportStubs(const std::string& list)
{
    std::istringstream lines(list);
    std::string library, source = Header;
    std::set<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line.substr(0, line.find(';')));
        std::string name, equals, exported, rest;
        if (!(words >> name)) continue;
        words >> equals >> exported >> rest;
        if (name == "LIBRARY") {
            if (!library.empty() || !IsName(equals, ".") || !exported.empty())
                throw Refusal("bad line: " + line);
            library = equals;
            continue;
        }
        if (equals.empty()) exported = name;
        const bool wellFormed = equals.empty() || (equals == "=" && rest.empty());
        if (library.empty() || !wellFormed || !IsName(name) || !IsName(exported))
            throw Refusal("bad line: " + line);
        if (!names.insert(name).second) throw Refusal("twice in the list: " + name);
        source += Filled(Stub, library, exported, name);
    }
    if (names.empty()) throw Refusal("no names in the list");
    return source + Filled(End, library, "", "");
}

} // namespace device
