#include "app/about_dialog.h"

#include "resources/resource_ids.h"
#include "ui/active_dialog.h"
#include "ui/dialog_controls.h"
#include "ui/dialog_support.h"

namespace
{

INT_PTR CALLBACK AboutProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_INITDIALOG) return HandleCommonMessages(dialog, message, wParam, lParam);
    InitDialogCommon(dialog);
    PublishDialog(DialogKind::About, dialog);
    return TRUE;
}

} // namespace

void ShowAboutDialog()
{
    ShowDialog(DIALOG_ABOUT, AboutProcedure);
}
