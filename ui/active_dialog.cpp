// SPDX-License-Identifier: MIT
#include "ui/active_dialog.h"

std::atomic<HWND> MainWindow{nullptr};
std::atomic<HWND> ActiveDialogWindow{nullptr};
std::atomic<DialogKind> ActiveDialogKind{DialogKind::None};

void PublishDialog(DialogKind kind, HWND dialog)
{
    ActiveDialogWindow.store(dialog);
    ActiveDialogKind.store(kind);
}

void WithdrawDialog()
{
    ActiveDialogKind.store(DialogKind::None);
    ActiveDialogWindow.store(nullptr);
}

HWND OpenDialogOfKind(DialogKind kind)
{
    return ActiveDialogKind.load() == kind ? ActiveDialogWindow.load() : nullptr;
}
