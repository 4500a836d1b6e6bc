// SPDX-License-Identifier: MIT
#include "sky.h"

#include <cstdio>

#include "output.h"
#include "platform/platform.h"
#include "resources/resource_ids.h"
#include "sky/sky_objects.h"
#include "ui/active_dialog.h"

namespace
{

constexpr const wchar_t* ClassName = L"Sky";
constexpr int Lines[] = {CONTROL_SBAS_VISIBLE_SVS, CONTROL_SBAS_VISIBLE_AZIMUTHS,
                         CONTROL_SBAS_VISIBLE_ELEVATIONS};

HWND MakeWindow(const wchar_t* className, DWORD style, HWND parent, int id)
{
    return CreateWindowExW(0, className, L"", style, 0, 0, 0, 0, parent,
                           reinterpret_cast<HMENU>(static_cast<intptr_t>(id)), nullptr, nullptr);
}

} // namespace

void OpenSkyDialog()
{
    WNDCLASSW plain = {};
    plain.lpszClassName = ClassName;
    plain.lpfnWndProc = DefWindowProcW;
    RegisterClassW(&plain);
    HWND dialog = MakeWindow(ClassName, 0, nullptr, 0);
    for (const int line : Lines) MakeWindow(L"STATIC", WS_CHILD, dialog, line);
    PublishDialog(DialogKind::Sbas, dialog);
}

void PrintSky()
{
    for (const SkyObject& object : SkyObjects)
        std::printf("%d %.9f %.9f\n", object.id, object.elevation, object.azimuth);
    for (const int line : Lines) {
        wchar_t text[256];
        GetDlgItemTextW(ActiveDialogWindow.load(), line, text, 256);
        PrintLine(text);
    }
}
