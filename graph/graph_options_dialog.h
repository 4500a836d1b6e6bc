// SPDX-License-Identifier: MIT
// The Graph Options dialog: settings of the chart's channels, the time scale, and the choice between chart
// and text page in the main window.
//
// The values of its fields are applied in whatever way it is closed; they cannot be discarded. Only "Save"
// stores the settings.
#pragma once

#include "ui/dialog.h"

extern const Dialog GraphOptionsDialog;
