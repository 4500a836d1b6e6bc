// SPDX-License-Identifier: MIT
// The C++ library was configured for newlib and takes the character classes from its <ctype.h>, which the
// system's headers replace here.
#define _U 01
#define _L 02
#define _N 04
#define _S 010
#define _P 020
#define _C 040
#define _X 0100
#define _B 0200
#include_next <bits/ctype_base.h>
#undef _U
#undef _L
#undef _N
#undef _S
#undef _P
#undef _C
#undef _X
#undef _B
