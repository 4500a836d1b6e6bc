// SPDX-License-Identifier: MIT
#include "tests/unit/sirf/dialogs/dialog_test.h"

#include "sirf/dialogs/command_dialog.h"
#include "ui/dialog_support.h"

void SirfDialogTest::With(int number, const std::function<void(HWND dialog)>& user)
{
    HeadlessUser([user] {
        ASSERT_NE(HeadlessTopDialog(), nullptr);
        user(HeadlessTopDialog());
    });
    HeadlessUser([] { HeadlessCommand(HeadlessTopDialog(), IDCANCEL); });
    EXPECT_TRUE(ShowSirfDialog(static_cast<uint16_t>(number)));
    EXPECT_EQ(HeadlessTopDialog(), nullptr);
    EXPECT_EQ(ActiveDialogKind.load(), DialogKind::None);
    EXPECT_EQ(ActiveDialogWindow.load(), nullptr);
}

void SirfDialogTest::Enter(HWND dialog, const Entry& entry)
{
    const auto setCheck = [&] {
        SendDlgItemMessageW(dialog, entry.control, BM_SETCHECK, static_cast<WPARAM>(entry.number), 0);
    };
    const std::vector<std::wstring> items =
        entry.kind == Entry::Kind::Text ? HeadlessItems(dialog, entry.control) : std::vector<std::wstring>();
    switch (entry.kind) {
    case Entry::Kind::Box: setCheck(); return;
    case Entry::Kind::Choice:
        SendDlgItemMessageW(dialog, entry.control, ListMessages.setSelection,
                            static_cast<WPARAM>(entry.number), 0);
        return;
    case Entry::Kind::Text:
        if (!LayoutOffset() || items.empty()) {
            EXPECT_TRUE(HeadlessType(dialog, entry.control, entry.text)) << entry.control;
            return;
        }
        for (size_t i = 0; i < items.size(); ++i)
            if (items[i] == entry.text) HeadlessChoose(dialog, entry.control, static_cast<int>(i));
        return;
    }
}

void SirfDialogTest::UseKeypad()
{
    HeadlessSetPlatformType(L"SmartPhone");
    ChooseLayout();
}

std::vector<std::string> SirfDialogTest::Written()
{
    const std::vector<std::string> frames(Port.writes.begin() + static_cast<ptrdiff_t>(Seen),
                                          Port.writes.end());
    Seen = Port.writes.size();
    return frames;
}
