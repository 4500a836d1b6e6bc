// SPDX-License-Identifier: MIT
#include "ui/waiting.h"

void WaitServingSentMessages(uint32_t milliseconds)
{
    const DWORD start = GetTickCount();
    for (;;) {
        const DWORD elapsed = GetTickCount() - start;
        const DWORD left = elapsed < milliseconds ? milliseconds - elapsed : 0;
        const DWORD reason = MsgWaitForMultipleObjectsEx(0, nullptr, left, QS_SENDMESSAGE, 0);
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        if (reason == WAIT_FAILED && left) Sleep(1); // never spin
        if (GetTickCount() - start >= milliseconds) return;
    }
}
