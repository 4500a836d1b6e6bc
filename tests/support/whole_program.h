// SPDX-License-Identifier: MIT
// The whole program from start to end, operated by a scripted user, and checked at the end.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "headless.h"
#include "platform/platform.h"
#include "tests/support/menu_dialogs.h"

// ---- Dialogs ------------------------------------------------------------------------------------------

// Opens a dialog from the menu; the user acts in it and then closes it if it is still open.
void InDialog(const DialogEntry& entry, const std::function<void(HWND dialog)>& act);

// The controls of a dialog that the user can act on, in the layout that is in use.
std::vector<HeadlessTemplateControl> ControlsOf(const DialogEntry& entry);

// True for a control that closes its dialog, or starts a search, which takes minutes of the clock.
bool Closes(int control);
bool Searches(int control);

// Clicks every button while the dialog is open, except those that close it or start a search.
void ClickEveryButton(HWND dialog, const DialogEntry& entry);

// ---- A run --------------------------------------------------------------------------------------------

// Runs the whole program with a command line; the user acts after its start. An About box is closed before,
// the program is ended afterwards. Then aborts if a resource was not released.
void RunWholeProgram(const wchar_t* commandLine, const std::function<void()>& act);

// Aborts if a thread, handle, key, text or drawing object is left, or a text line has lost its end.
void ExpectNothingLeft();

// Feeds bytes through the reader's path, with time for painting at intervals.
void Receive(std::string_view bytes);

// Goes from the text page to the chart, with a key.
void ShowChart();

// Port COM3: open without a reader thread, so that all happens on one thread; what is sent is kept.
void OpenPortWithoutReader();
