// SPDX-License-Identifier: MIT
#include "app/about_dialog.h"

#include "resources/resource_ids.h"

constexpr Dialog AboutDialog = {.number = DIALOG_ABOUT, .kind = DialogKind::About};
