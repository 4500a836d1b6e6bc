// SPDX-License-Identifier: MIT
// SBAS: chooses satellite, mode and time-out (message id 170), and shows the places of the satellites.
#include "resources/resource_ids.h"
#include "sirf/dialogs/command_dialog.h"
#include "sky/sky_plot.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_scrolling.h"

namespace
{

void Fill(HWND dialog)
{
    MakeListLeafable(dialog, CONTROL_SBAS_PRN);
}

INT_PTR Paint(HWND dialog, UINT message, WPARAM, LPARAM)
{
    if (message != WM_PAINT) return FALSE;
    PAINTSTRUCT paint;
    if (HDC dc = BeginPaint(dialog, &paint)) DrawSkyPlot(dc, -DialogScrolled());
    EndPaint(dialog, &paint);
    return TRUE;
}

} // namespace

constexpr Dialog SbasDialog = {
    .number = DIALOG_SIRF_SBAS,
    .kind = DialogKind::Sbas,
    .fill = Fill,
    .handle = Paint,
};
