// SPDX-License-Identifier: MIT
// Messages with a fix, for the tests of their effects.
#pragma once

#include "tests/unit/sirf/sirf_test.h"

// Near 59.2 N 13.1 E, 97.31 m above the ellipsoid; HDOP 1.4; 3 d 07:08:09.87; 3D, 9 satellites.
inline Payload NavigationMessage()
{
    return Payload(2, 41)
        .At(1, "0030A854 000B52AE 00533E66")
        .At(19, "04")
        .At(20, "07")
        .At(24, "01B2B51B")
        .At(28, "09");
}

// 2024-02-29 23:59:58.5; 52.1234567 N 4.5678901 W; 123.45 m above the ellipsoid, 6.78 m below mean sea
// level; 12.34 m/s to 359.99 degrees; errors 4.56 and 7.89 m; 9 satellites, HDOP 1.8; 3D.
inline Payload GeodeticMessage()
{
    return Payload(41, 91)
        .At(3, "0204")
        .At(7, "149AA435")
        .At(11, "07E8 02 1D 17 3B E484")
        .At(23, "1F116887 FD46FECB 00003039 FFFFFD5A")
        .At(39, "15 04D2 8C9F")
        .At(50, "000001C8 00000315")
        .At(88, "09 09");
}
