// SPDX-License-Identifier: MIT
#include "app/single_copy.h"

#include "platform/platform.h"

namespace
{

constexpr uint32_t PollMs = 50, LongestMs = 5000;

HANDLE OnlyCopy = nullptr;

} // namespace

bool BecomeOnlyCopy(const wchar_t* name)
{
    for (uint32_t waited = 0;; waited += PollMs) {
        // Two copies that start at the same time do not find each other's window, but only one of them can
        // create this object.
        const HANDLE copy = CreateMutexW(nullptr, FALSE, name);
        const bool isOther = copy && GetLastError() == ERROR_ALREADY_EXISTS;
        HWND window = FindWindowW(name, name);
        if (!window && (!isOther || waited >= LongestMs)) {
            OnlyCopy = copy;
            return true;
        }
        if (copy) CloseHandle(copy);
        if (window) {
            BringToFront(window);
            return false;
        }
        Sleep(PollMs);
    }
}

void LeaveOnlyCopy()
{
    if (OnlyCopy) CloseHandle(OnlyCopy);
    OnlyCopy = nullptr;
}
