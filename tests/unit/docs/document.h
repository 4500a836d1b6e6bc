// SPDX-License-Identifier: MIT
// docs/protocols.md as data, and a fixture that compares it with the program.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/unit/sirf/dialogs/dialog_test.h"

// Cells of a row of a table.
using Row = std::vector<std::string>;

// The rows of the document's tables, without the tables' headings, by the heading above them.
const std::map<std::string, std::vector<Row>>& Tables();

// The numbers in a cell like "7 or 8", in their order.
std::vector<uint32_t> NumbersIn(const std::string& cell);

// True if the document contains the phrase. A line end of the document counts as a space.
testing::AssertionResult Says(const std::string& phrase);

// For phrases: a decimal number, two hexadecimal digits, and "a, b and c".
std::string Number(int64_t number);
std::string Hexadecimal(uint8_t byte);
std::string Listed(const std::vector<std::string>& items);

std::string Narrow(const std::wstring& text); // of ASCII characters

class DocumentTest : public SirfDialogTest
{
protected:
    // Opens a dialog of either protocol, lets the user do something in it, and closes it.
    void InDialog(uint16_t number, const std::function<void(HWND dialog)>& act);

    // Everything that reception changes: page, chart, time, the latest report, and the open dialog.
    std::wstring State() const;

private:
    uint16_t OpenNumber = 0; // of the open dialog, 0: none
};
