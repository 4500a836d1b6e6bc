// SPDX-License-Identifier: MIT
// The About box; greets the user of a first start.
#pragma once

#include "ui/dialog.h"

extern const Dialog AboutDialog;
