// SPDX-License-Identifier: MIT
// The output of toravane-replay, on standard output.
#pragma once

#include <string>
#include <vector>

void PrintLine(const wchar_t* text); // in UTF-8

void PrintSample();                                           // the channels' values and the fix's time
std::string PageText();                                       // 19 lines, UTF-8
void PrintStats();                                            // four lines
void PrintMessages();                                         // the receiver's text
void PrintCommands(const std::vector<std::string>& commands); // one per line
