// SPDX-License-Identifier: MIT
#include "graph/graph_options_dialog.h"

#include "graph/background.h"
#include "graph/channels.h"
#include "graph/graph_mode.h"
#include "graph/graph_settings.h"
#include "graph/surface.h"
#include "resources/resource_ids.h"
#include "ui/active_dialog.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"
#include "ui/error_boxes.h"
#include "ui/shell_libraries.h"

namespace
{

constexpr COLORREF ColorMask = 0xFFFFFF;

// Edits of a channel: whole numbers, and heights in pixels.
struct ValueEdit {
    int control;
    std::atomic<float> GraphChannelRecord::*field;
};
constexpr ValueEdit ValueEdits[] = {
    {CONTROL_GRAPH_VALUE_ZERO, &GraphChannelRecord::ValueZero},
    {CONTROL_GRAPH_VALUE_MIN, &GraphChannelRecord::ValueMin},
    {CONTROL_GRAPH_VALUE_MAX, &GraphChannelRecord::ValueMax},
};
struct PixelEdit {
    int control;
    std::atomic<uint16_t> GraphChannelRecord::*field;
};
constexpr PixelEdit PixelEdits[] = {
    {CONTROL_GRAPH_PIXEL_MIN, &GraphChannelRecord::PixelMin},
    {CONTROL_GRAPH_PIXEL_MAX, &GraphChannelRecord::PixelMax},
};

// Brush of each colour field. The dialog makes a new one at every repaint and deletes the one before; the
// last ones are deleted when the dialog closes.
HBRUSH ColorBrushes[ChannelCount];

COLORREF CustomColors[16]; // for the system's colour dialog, kept while the program runs

// ---- Fields -------------------------------------------------------------------------------------------

// A value as the whole number that an edit shows.
int32_t ShownValue(float value)
{
    if (!(value >= -2147483648.0f)) return INT32_MIN;
    return value < 2147483648.0f ? static_cast<int32_t>(value) : INT32_MAX;
}

void ShowValue(HWND dialog, const ValueEdit& edit, int channel)
{
    const int32_t value = ShownValue((GraphChannel[channel].*edit.field).load());
    SetDlgItemInt(dialog, edit.control + channel, static_cast<UINT>(value), TRUE);
}

void ShowChannel(HWND dialog, int i)
{
    for (const ValueEdit& edit : ValueEdits) {
        UseNarrowMargins(dialog, edit.control + i);
        ShowValue(dialog, edit, i);
        UseNumericInput(dialog, edit.control + i);
    }
    for (const PixelEdit& edit : PixelEdits) {
        UseNarrowMargins(dialog, edit.control + i);
        SetDlgItemInt(dialog, edit.control + i, (GraphChannel[i].*edit.field).load(), FALSE);
        UseNumericInput(dialog, edit.control + i);
    }
    SetCheck(dialog, CONTROL_GRAPH_VISIBLE + i, GraphChannel[i].Visible.load() ? BST_CHECKED : BST_UNCHECKED);
}

void ShowSettings(HWND dialog)
{
    for (int i = 0; i < int{ChannelCount}; ++i) ShowChannel(dialog, i);
    for (const TimeScaleRow& row : TimeScale) FillList(dialog, CONTROL_GRAPH_TIME_SCALE, {&row.Label, 1});
    SelectListEntry(dialog, CONTROL_GRAPH_TIME_SCALE, TimeScaleIdx.load());
    SetCheck(dialog, CONTROL_GRAPH_LINES, GraphLines.load() ? BST_CHECKED : BST_UNCHECKED);
}

bool IsChecked(HWND dialog, int control)
{
    return GetCheck(dialog, control) == BST_CHECKED;
}

void ApplyChannel(HWND dialog, int i)
{
    GraphChannelRecord& channel = GraphChannel[i];
    int32_t number;
    for (const ValueEdit& edit : ValueEdits)
        if (ReadNumber(dialog, edit.control + i, number))
            (channel.*edit.field).store(static_cast<float>(number));
    for (const PixelEdit& edit : PixelEdits)
        if (ReadNumber(dialog, edit.control + i, number) && number >= 0)
            (channel.*edit.field).store(static_cast<uint16_t>(number));
    channel.Visible.store(IsChecked(dialog, CONTROL_GRAPH_VISIBLE + i));
}

void ApplyGraphOptions(HWND dialog)
{
    for (int i = 0; i < int{ChannelCount}; ++i) ApplyChannel(dialog, i);
    GraphLines.store(IsChecked(dialog, CONTROL_GRAPH_LINES));
    const int32_t row = GetListSelection(dialog, CONTROL_GRAPH_TIME_SCALE);
    if (row >= 0 && row != TimeScaleIdx.load()) { // -1 if the stored index names no row
        TimeScaleIdx.store(row);
        if (GraphWidth.load() && GraphHeight.load())
            CheckGdiResult(CopyToAllColumns(GraphBitmap, BackgroundColumn), L"StretchBlt3");
    }
    ResetGraphBackground();
}

// ---- Commands -----------------------------------------------------------------------------------------

// The main window may show the other view now, and the dialog may have covered only a part of the window.
void Apply(HWND dialog)
{
    ApplyGraphOptions(dialog);
    if (HWND window = MainWindow.load()) InvalidateRect(window, nullptr, TRUE);
}

void Show(HWND dialog)
{
    GraphMode = GraphModeValue::Chart;
    Apply(dialog);
    CloseDialog(dialog);
}

void Hide(HWND dialog)
{
    GraphMode = GraphModeValue::TextPage;
    Apply(dialog);
    CloseDialog(dialog);
}

void Save(HWND dialog)
{
    ApplyGraphOptions(dialog);
    SaveGraphSettings();
}

// Makes the present position the zero of its channels.
void Zero(HWND dialog)
{
    constexpr Channel Positions[] = {ChannelNorthing, ChannelEasting, ChannelAltitude};
    for (const Channel channel : Positions) {
        GraphChannel[channel].ValueZero.store(GraphChannel[channel].PublishedValue.load());
        ShowValue(dialog, ValueEdits[0], channel);
    }
}

void Help(HWND)
{
    InfoBox(L"Graph", L"Messages GGA, GSA and RMC are needed in NMEA protocol. "
                      L"Messages MID2 and MID41 are needed in SiRF protocol. "
                      L"VDOP is not supported in SiRF protocol. "
                      L"EHPE and EVPE, are not supported in NMEA protocol. "
                      L"Use joystick to toggle graph/text in main screen.");
}

void ChooseChannelColor(HWND dialog, uint32_t channel)
{
    if (!ChooseColorEntry) return;
    CHOOSECOLORW request = {};
    request.lStructSize = sizeof request;
    request.hwndOwner = dialog;
    request.rgbResult = GraphChannel[channel].Color.load() & ColorMask;
    request.lpCustColors = CustomColors;
    request.Flags = CC_RGBINIT | CC_ANYCOLOR;
    if (!ChooseColorEntry(&request)) return;
    GraphChannel[channel].Color.store(request.rgbResult);
    HWND field = GetDlgItem(dialog, CONTROL_GRAPH_COLOR + static_cast<int>(channel));
    ShowWindow(field, SW_HIDE); // it repaints when it is shown again
    ShowWindow(field, SW_SHOW);
}

constexpr DialogButton Buttons[] = {
    {IDOK, Apply},
    {IDCANCEL, Apply},
    {CONTROL_GRAPH_SHOW, Show},
    {CONTROL_GRAPH_HIDE, Hide},
    {CONTROL_GRAPH_SAVE, Save},
    {CONTROL_GRAPH_ZERO, Zero},
    {CONTROL_GRAPH_HELP, Help},
};

// ---- Colour fields ------------------------------------------------------------------------------------

// Brush that fills a colour field; null for other controls of the dialog.
HBRUSH PaintColorField(HDC dc, HWND control)
{
    const uint32_t channel = static_cast<uint32_t>(GetDlgCtrlID(control) - CONTROL_GRAPH_COLOR);
    if (channel >= ChannelCount) return nullptr;
    const COLORREF color = GraphChannel[channel].Color.load() & ColorMask;
    SetBkColor(dc, color);
    if (ColorBrushes[channel]) DeleteObject(ColorBrushes[channel]);
    return ColorBrushes[channel] = CreateSolidBrush(color);
}

// The colour fields are buttons, because keys can reach buttons. A thicker frame shows the focus.
void DrawColorButton(const DRAWITEMSTRUCT& item)
{
    const HBRUSH brush = PaintColorField(item.hDC, item.hwndItem);
    if (!brush) return;
    RECT area = item.rcItem;
    FillRect(item.hDC, &area, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    const int frame = item.itemState & ODS_FOCUS ? 3 : 1;
    area.left += frame;
    area.top += frame;
    area.right -= frame;
    area.bottom -= frame;
    FillRect(item.hDC, &area, brush);
}

void DeleteColorBrushes()
{
    for (HBRUSH& brush : ColorBrushes) {
        if (brush) DeleteObject(brush);
        brush = nullptr;
    }
}

INT_PTR HandleColors(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND: {
        const uint32_t channel = LOWORD(wParam) - static_cast<uint32_t>(CONTROL_GRAPH_COLOR);
        if (channel < ChannelCount && HIWORD(wParam) == BN_CLICKED) ChooseChannelColor(dialog, channel);
        return FALSE;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
        return reinterpret_cast<INT_PTR>(
            PaintColorField(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam)));
    case WM_DRAWITEM: DrawColorButton(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)); return TRUE;
    case WM_DESTROY: DeleteColorBrushes(); return FALSE;
    default: return FALSE;
    }
}

} // namespace

constexpr Dialog GraphOptionsDialog = {
    .number = DIALOG_GRAPH_OPTIONS,
    .kind = DialogKind::GraphOptions,
    .buttons = Buttons,
    .fill = ShowSettings,
    .handle = HandleColors,
};
