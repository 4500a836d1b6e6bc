// SPDX-License-Identifier: MIT
// Fixture of every test of the product: a newly started system and a newly started program. A test fails if
// steps of its user have not run.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "headless.h"
#include "ui/active_dialog.h"
#include "ui/error_boxes.h"
#include "ui/page_lines.h"

class ProductTest : public testing::Test
{
protected:
    ProductTest();
    ~ProductTest() override;

    // Port COM3:, open, without a reader thread: the program's bytes are in its `writes`.
    HeadlessPort& OpenPort();

    // Feeds bytes through the reader's path, in one run.
    static void Feed(std::string_view bytes);

    // A window in place of the program's own, with the client size that is set: it shows posted boxes.
    static HWND MakeMainWindow();

    // Feeds a sentence with '$', correct checksum and line end around the body.
    static void FeedSentence(std::string_view body);

    // Sets NMEA as recognised, for tests without the first sentence's hot start.
    static void RecogniseNmea();

    // Line of the text page.
    static std::wstring Line(uint32_t line);

    // Dialog template by resource number; the test fails if there is none.
    static HeadlessTemplate FindTemplate(uint32_t number);

    // Stored setting, or -12345 if there is none.
    static int32_t Setting(const wchar_t* name);
    static void StoreSetting(const wchar_t* name, int32_t value);
};

// '$', body, '*', checksum, CR LF.
std::string Sentence(std::string_view body);

// Compares a box with caption and text.
testing::AssertionResult IsBox(const HeadlessBox& box, const std::wstring& caption, const std::wstring& text);
