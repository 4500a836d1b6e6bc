// Modal dialogs from the program's own templates.
#include <gtest/gtest.h>

#include "platform/headless/headless.h"
#include "platform/platform.h"
#include "resources/resource_ids.h"

namespace
{

struct Dialogs : testing::Test {
    Dialogs()
    {
        HeadlessReset();
        Received.clear();
        ResultOfInit = TRUE;
    }
    static inline std::vector<UINT> Received;
    static inline INT_PTR ResultOfInit;
};

INT_PTR Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    Dialogs::Received.push_back(message);
    if (message == WM_INITDIALOG) {
        EXPECT_EQ(lParam, 5);
        return Dialogs::ResultOfInit;
    }
    if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL))
        return EndDialog(dialog, LOWORD(wParam));
    return FALSE;
}

INT_PTR Open(uint32_t number = DIALOG_ABOUT, HWND owner = nullptr)
{
    return DialogBoxParamW(nullptr, MAKEINTRESOURCEW(number), owner, Procedure, 5);
}

TEST_F(Dialogs, TemplatesOfTheAboutBox)
{
    HeadlessTemplate about;
    ASSERT_TRUE(HeadlessFindTemplate(DIALOG_ABOUT, about));
    EXPECT_EQ(about.caption, L"About Toravane");
    EXPECT_EQ(about.width, 160);
    EXPECT_EQ(about.height, 92);
    ASSERT_EQ(about.controls.size(), 4u);
    EXPECT_EQ(about.controls[0].className, L"STATIC");
    EXPECT_EQ(about.controls[0].text, L"Toravane v 2.20");
    EXPECT_EQ(about.controls[0].id, -1);
    EXPECT_EQ(about.controls[3].className, L"BUTTON");
    EXPECT_EQ(about.controls[3].id, IDOK);
    EXPECT_EQ(about.controls[3].x, 55);
    ASSERT_TRUE(HeadlessFindTemplate(DIALOG_ABOUT + KEYPAD_LAYOUT, about));
    EXPECT_EQ(about.width, 120);
    EXPECT_FALSE(HeadlessFindTemplate(999, about));
    EXPECT_EQ(Open(999), -1);
    EXPECT_EQ(GetLastError(), ERROR_RESOURCE_NAME_NOT_FOUND);
}

TEST_F(Dialogs, OpensAndCloses)
{
    HeadlessUser([] {
        const HWND dialog = HeadlessTopDialog();
        EXPECT_EQ(GetActiveWindow(), dialog);
        EXPECT_EQ(HeadlessTitle(dialog), L"About Toravane");
        EXPECT_EQ(HeadlessFocus(dialog), IDOK);
        EXPECT_TRUE(HeadlessClick(dialog, IDOK));
    });
    EXPECT_EQ(Open(), IDOK);
    EXPECT_EQ(Dialogs::Received.front(), WM_INITDIALOG);
    EXPECT_EQ(HeadlessTopDialog(), nullptr);
    EXPECT_EQ(GetActiveWindow(), nullptr);
}

} // namespace
