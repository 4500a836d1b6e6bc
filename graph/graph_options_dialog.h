// SPDX-License-Identifier: MIT
// The Graph Options dialog: how each channel of the chart is drawn, the time scale, and whether the main
// window shows the chart or the text page.
//
// Whatever way it is closed, what stands in its fields is applied: there is no discarding. Settings are
// stored only by "Save".
#pragma once

#include "ui/dialog.h"

extern const Dialog GraphOptionsDialog;
