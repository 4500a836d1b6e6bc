// SPDX-License-Identifier: MIT
// A window for tests, which records the messages to its procedure.
#pragma once

#include <functional>
#include <vector>

#include "platform/headless/headless.h"
#include "platform/platform.h"

struct Received {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

inline std::vector<Received> Messages;
inline std::function<bool(HWND, const Received&)> OnMessage; // true: nothing more is done with the message

inline LRESULT RecordingProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Messages.push_back({message, wParam, lParam});
    if (OnMessage && OnMessage(window, Messages.back())) return 1;
    return DefWindowProcW(window, message, wParam, lParam);
}

inline HWND MakeTestWindow(DWORD style = WS_VISIBLE, HWND owner = nullptr)
{
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = RecordingProcedure;
    windowClass.lpszClassName = L"Test";
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    RegisterClassW(&windowClass);
    return CreateWindowExW(0, L"Test", L"A test", style, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                           CW_USEDEFAULT, owner, nullptr, nullptr, nullptr);
}

inline HWND MakeTestControl(HWND parent, const wchar_t* className, int id, DWORD style,
                            const wchar_t* text = L"")
{
    return CreateWindowExW(0, className, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 60, 20, parent,
                           reinterpret_cast<HMENU>(static_cast<intptr_t>(id)), nullptr, nullptr);
}

// Base of fixtures: a newly started system.
template <typename Base> struct Fresh : Base {
    Fresh()
    {
        HeadlessReset();
        Messages.clear();
        OnMessage = nullptr;
    }
};

inline size_t CountMessages(UINT message)
{
    size_t count = 0;
    for (const Received& received : Messages) count += received.message == message;
    return count;
}
