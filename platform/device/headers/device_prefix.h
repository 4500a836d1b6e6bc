// SPDX-License-Identifier: MIT
// Comes before everything else that is compiled for the device: lets the mingw-w64 headers take this compiler
// for one of 32-bit Windows on ARM.
#pragma once

#define _WIN32 1
#define __MINGW32__ 1
#define __MSVCRT__ 1
#define _M_ARM 4
#define _ARM_ 1
#define _WIN32_WCE 0x300
#define UNDER_CE 0x300
#define WINVER 0x0400
#define _WIN32_WINNT 0x0400
#define _WIN32_IE 0x0400

// The device has one calling convention, and stubs take the place of imported declarations.
#define __stdcall
#define __cdecl
#define _cdecl
#define __fastcall
#define __thiscall
#define __declspec(what)

// size_t is `unsigned long` in this compiler; the headers would use `unsigned int`.
typedef __SIZE_TYPE__ size_t;
typedef __PTRDIFF_TYPE__ ptrdiff_t;
#define _SIZE_T_DEFINED
#define _PTRDIFF_T_DEFINED
#define _PTRDIFF_T_
