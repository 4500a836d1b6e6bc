// SPDX-License-Identifier: MIT
#include "nmea/dialogs/command_dialog.h"

#include "resources/resource_ids.h"
#include "tests/unit/nmea/dialogs/command_dialog_test.h"

namespace
{

constexpr int Command = CONTROL_DEVELOPMENT_COMMAND, Set = CONTROL_DEVELOPMENT_SET,
              GreyBox = CONTROL_NMEA_GREY_BOX;

class DevelopmentDataDialog : public CommandDialogTest
{
};
IN_BOTH_LAYOUTS(DevelopmentDataDialog);

TEST_P(DevelopmentDataDialog, InitialState)
{
    Open(&::DevelopmentDataDialog,
         [](HWND dialog) { EXPECT_EQ(HeadlessText(dialog, Command), L"PSRF105,1"); });
}

TEST_P(DevelopmentDataDialog, SendsWhateverIsTyped)
{
    const std::wstring eighty(80, L'x');
    struct Row {
        std::wstring typed;
        std::string sentence;
    };
    const Row Rows[] = {
        {L"PSRF105,0", "$PSRF105,0*3F\r\n"},
        {L"PSRF106,21", "$PSRF106,21*0F\r\n"},
        {L"", "$*00\r\n"},
        {L"A*B", "$A*B*29\r\n"},
        {L"\u0141", "$A*41\r\n"}, // the low byte of each character
        {eighty, "$" + std::string(80, 'x') + "*00\r\n"},
        {eighty + L"yz", "$" + std::string(80, 'x') + "*00\r\n"}, // no more than 80
    };
    Open(&::DevelopmentDataDialog, [&](HWND dialog) {
        for (const Row& row : Rows) {
            HeadlessType(dialog, Command, row.typed);
            HeadlessClick(dialog, Set);
            EXPECT_EQ(TakeSent(), row.sentence);
        }
        EXPECT_TRUE(TakeBoxes().empty());
    });
}

TEST_P(DevelopmentDataDialog, SetEmptiesTheGreyBoxAtOnce)
{
    Open(&::DevelopmentDataDialog, [](HWND dialog) {
        FeedSentence("PSRFTXT,old");
        EXPECT_EQ(HeadlessText(dialog, GreyBox), L"old\r\n");
        HeadlessClick(dialog, Set);
        EXPECT_EQ(HeadlessText(dialog, GreyBox), L"");
        FeedSentence("PSRFTXT,answer");
        EXPECT_EQ(HeadlessText(dialog, GreyBox), L"answer\r\n");
    });
}

} // namespace
