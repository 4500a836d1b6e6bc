// SPDX-License-Identifier: MIT
// Fixture of every test of the product: a freshly started system and a freshly started program. A test fails
// when steps of its user have not run.
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

    // Port COM3:, open, without a reader thread: what the program sends is in its `writes`.
    HeadlessPort& OpenPort();

    // Through the reader's path, in one run.
    static void Feed(std::string_view bytes);

    // A window in place of the program's own, of the client size that is set: it shows posted boxes.
    static HWND MakeMainWindow();

    // A sentence with '$', right checksum and line end around the body.
    static void FeedSentence(std::string_view body);

    // The same when the first sentence's hot start is not of interest: NMEA counts as recognised.
    static void RecogniseNmea();

    // Line of the text page.
    static std::wstring Line(uint32_t line);

    // Dialog template by resource number; the test fails when there is none.
    static HeadlessTemplate FindTemplate(uint32_t number);

    // Stored setting, or -12345 when there is none.
    static int32_t Setting(const wchar_t* name);
    static void StoreSetting(const wchar_t* name, int32_t value);
};

// '$', body, '*', checksum, CR LF.
std::string Sentence(std::string_view body);

// Compares with what a box shows: caption, then text.
testing::AssertionResult IsBox(const HeadlessBox& box, const std::wstring& caption, const std::wstring& text);
