// SPDX-License-Identifier: MIT
// Makes the assembler source of an import library, from the list of a system library's exports.
//
// Lines of a list: "LIBRARY file name" once, then one name per line, or "name = exported name" if the
// system's name is another one. A semicolon begins a comment.
#pragma once

#include <string>
#include <string_view>

namespace device
{

// Symbol of the slot that receives a call's address: this, the library, '!', the exported name.
constexpr std::string_view SlotPrefix = "import!";

// For each name: a procedure with this name, which jumps to the address in its slot, and the slot. Both are
// in separate sections, so that the linker keeps only those that the program calls. Refuses invalid and
// repeated names, and a list without library or without names.
std::string MakeImportStubs(const std::string& list);

} // namespace device
