// SPDX-License-Identifier: MIT
// A replacement for the SBAS dialog, so that the decoders compute the sky.
#pragma once

void OpenSkyDialog();
void PrintSky(); // 13 lines, one for each object, and the dialog's three lines
