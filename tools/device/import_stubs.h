// SPDX-License-Identifier: MIT
// Assembler source of an import library, from the list of what a system library exports.
//
// Lines of a list: "LIBRARY file name" once, then a name each, or "name = exported name" where the system's
// name is another one. A semicolon begins a comment.
#pragma once

#include <string>
#include <string_view>

namespace device
{

// Symbol of the slot that receives a call's address: this, the library, '!', the exported name.
constexpr std::string_view SlotPrefix = "import!";

// For each name a procedure of that name which goes on at the address in its slot, and the slot; both in
// sections of their own, so that the linker keeps only what the program calls. Refuses names that are no
// names or stand there twice, and a list without library or without names.
std::string MakeImportStubs(const std::string& list);

} // namespace device
