// SPDX-License-Identifier: MIT
// Prints the headless platform's data about the program, for scenarios.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "headless.h"

std::string Readable(std::wstring_view text);
std::string Readable(std::string_view bytes); // what is no ASCII text as hexadecimal

void Print(const char* format, ...) __attribute__((format(printf, 1, 2)));

void PrintMainWindow(); // title, menu, texts, shapes, pixels
void PrintTexts();      // of the main window
void PrintPixels();
void PrintDialog(HWND dialog, uint32_t templateNumber); // each control as the user sees it
void PrintNews(
    HeadlessPort* port); // boxes, save dialogs, written bytes and port settings since the last time
void PrintRegistry();
void PrintLeftovers(); // resources that the program has not released
