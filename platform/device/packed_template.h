// SPDX-License-Identifier: MIT
// Dialog templates as the image keeps them, at half their size: two layouts of each dialog are the largest
// part of the program that is not code.
//
// The template's size in two bytes, low one first. Then groups: a byte of eight flags, of which the lowest is
// the first, and for each of them either a byte of the template (1) or two bytes, low one first, that repeat
// bytes which are there already (0). The lower 11 bits of these are the distance back less 1, the upper 5 the
// number of bytes less 3.
#pragma once

#include <cstddef>
#include <cstdint>

// The resource type of packed templates: the first number that the system leaves to programs.
constexpr uint16_t PackedTemplateType = 256;
constexpr size_t LargestTemplate = 8192;

constexpr uint32_t RepeatDistanceBits = 11, ShortestRepeat = 3, LongestRepeat = ShortestRepeat + 31;

// Makes the template of its packed form and returns its size. 0 for one that is larger than
// `LargestTemplate`, or that repeats what is not there.
size_t UnpackTemplate(const uint8_t* packed, uint8_t (&unpacked)[LargestTemplate]);
