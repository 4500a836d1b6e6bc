// SPDX-License-Identifier: MIT
// The About box. It greets the user at the first start.
#pragma once

#include "ui/dialog.h"

extern const Dialog AboutDialog;
