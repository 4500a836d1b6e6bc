#include "app/about_dialog.h"

#include "app/active_dialog.h"
#include "app/dialog_support.h"
#include "resources/resource_ids.h"

namespace
{

INT_PTR CALLBACK AboutProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        InitDialogCommon(dialog);
        PublishDialog(DialogKind::About, dialog);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL) return FALSE;
        WithdrawDialog();
        EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    case WM_HOTKEY: HandleHotKey(message, wParam, lParam); return TRUE;
    case WM_DESTROY: WithdrawDialog(); return FALSE;
    default: return FALSE;
    }
}

} // namespace

void ShowAboutDialog()
{
    ShowDialog(DIALOG_ABOUT, AboutProcedure);
}
