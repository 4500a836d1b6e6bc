// SPDX-License-Identifier: MIT
// An x86 header that mingw-w64's <malloc.h> includes; there is nothing in it for ARM.
#pragma once
