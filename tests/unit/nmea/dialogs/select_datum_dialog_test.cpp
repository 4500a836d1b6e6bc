// SPDX-License-Identifier: MIT
#include "nmea/dialogs/command_dialog.h"

#include "resources/resource_ids.h"
#include "tests/unit/nmea/dialogs/command_dialog_test.h"

namespace
{

constexpr int Datum = CONTROL_DATUM, Set = CONTROL_DATUM_SET;

class SelectDatumDialog : public CommandDialogTest
{
};
IN_BOTH_LAYOUTS(SelectDatumDialog);

TEST_P(SelectDatumDialog, InitialState)
{
    Open(&::SelectDatumDialog, [](HWND dialog) {
        EXPECT_EQ(HeadlessItems(dialog, Datum),
                  (std::vector<std::wstring>{L"WGS-84", L"Tokyo Mean", L"Tokyo Japan", L"Tokyo Korea",
                                             L"Tokyo Okinawa"}));
        EXPECT_EQ(HeadlessSelection(dialog, Datum), 0);
    });
}

TEST_P(SelectDatumDialog, DatumCodes)
{
    struct Row {
        const wchar_t* datum;
        const char* sentence;
    };
    constexpr Row Rows[] = {
        {L"WGS-84", "$PSRF106,21*0F\r\n"},         {L"Tokyo Mean", "$PSRF106,178*32\r\n"},
        {L"Tokyo Japan", "$PSRF106,179*33\r\n"},   {L"Tokyo Korea", "$PSRF106,180*35\r\n"},
        {L"Tokyo Okinawa", "$PSRF106,181*34\r\n"},
    };
    Open(&::SelectDatumDialog, [&](HWND dialog) {
        for (const Row& row : Rows) {
            Choose(dialog, Datum, row.datum);
            HeadlessClick(dialog, Set);
            EXPECT_EQ(TakeSent(), row.sentence);
        }
        EXPECT_TRUE(TakeBoxes().empty());
    });
}

TEST_P(SelectDatumDialog, NoDatumIsRefused)
{
    Open(&::SelectDatumDialog, [&](HWND dialog) {
        Unchoose(dialog, Datum);
        HeadlessClick(dialog, Set);
        EXPECT_TRUE(Refuses(L"Datum", L"Select a datum."));
        EXPECT_EQ(ClearOnNextAppend.load(), 0);
    });
}

} // namespace
