// SPDX-License-Identifier: MIT
// Device contexts, bitmaps and the output of windows.
#include <algorithm>

#include <gtest/gtest.h>

#include "tests/unit/platform/test_window.h"

namespace
{

constexpr uint32_t White = 0xFFFFFF;

struct Drawing : Fresh<testing::Test> {
    Drawing()
    {
        HeadlessSetClientSize(20, 10);
        Window = MakeTestWindow();
    }
    HWND Window;

    static HBITMAP Section(int width, int height, uint32_t*& bits)
    {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* memory = nullptr;
        const HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &memory, nullptr, 0);
        bits = static_cast<uint32_t*>(memory);
        return bitmap;
    }
    uint32_t At(int x, int y) const { return HeadlessPixels(Window).at(static_cast<size_t>(y * 20 + x)); }
};

TEST_F(Drawing, SectionsGoToTheWindowClipped)
{
    uint32_t* bits = nullptr;
    const HBITMAP bitmap = Section(4, -3, bits); // the top row first
    ASSERT_TRUE(bits);
    for (uint32_t i = 0; i < 12; ++i) bits[i] = i + 1;
    const HDC window = GetDC(Window), memory = CreateCompatibleDC(window);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    EXPECT_TRUE(BitBlt(window, 18, 8, 4, 3, memory, 0, 0, SRCCOPY));
    EXPECT_EQ(At(18, 8), 1u);
    EXPECT_EQ(At(19, 9), 6u);
    EXPECT_TRUE(BitBlt(window, -1, -1, 4, 3, memory, 0, 0, SRCCOPY));
    EXPECT_EQ(At(0, 0), 6u);
    EXPECT_EQ(At(2, 1), 12u);
    EXPECT_TRUE(StretchBlt(window, 0, 0, 20, 10, memory, 1, 1, 1, 1, SRCCOPY));
    EXPECT_EQ(At(13, 7), 6u);
    EXPECT_TRUE(StretchBlt(memory, 0, 0, 4, 3, memory, 0, 0, 1, 3, SRCCOPY)) << "one column over all";
    EXPECT_EQ(bits[3], 1u);
    EXPECT_EQ(bits[11], 9u);
    EXPECT_TRUE(StretchBlt(memory, 0, 0, 1, 3, nullptr, 0, 0, 1, 1, WHITENESS));
    EXPECT_EQ(bits[8], White);
    EXPECT_FALSE(BitBlt(window, 0, 0, 1, 1, nullptr, 0, 0, SRCCOPY));
    EXPECT_FALSE(BitBlt(window, 0, 0, 1, 1, memory, 0, 0, 0x1234));
    EXPECT_FALSE(DeleteObject(bitmap)) << "it is selected";
    EXPECT_EQ(SelectObject(memory, before), bitmap);
    EXPECT_TRUE(DeleteObject(bitmap));
    EXPECT_TRUE(DeleteDC(memory));
    EXPECT_TRUE(ReleaseDC(Window, window));
    EXPECT_EQ(HeadlessGdiObjects(), 0u);
}

TEST_F(Drawing, BottomUpSection)
{
    uint32_t* bits = nullptr;
    Section(1, 2, bits);
    const HBITMAP bitmap = Section(1, 2, bits);
    bits[0] = 7;
    const HDC window = GetDC(Window), memory = CreateCompatibleDC(window);
    SelectObject(memory, bitmap);
    BitBlt(window, 0, 0, 1, 2, memory, 0, 0, SRCCOPY);
    EXPECT_EQ(At(0, 1), 7u);
}

TEST_F(Drawing, SectionsOfOtherKindsAreRefused)
{
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), 4, 4, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = &info;
    EXPECT_FALSE(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    EXPECT_EQ(bits, nullptr);
    uint32_t* none = nullptr;
    EXPECT_FALSE(Section(0, 4, none));
    EXPECT_FALSE(Section(20000, 4, none));
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
}

TEST_F(Drawing, ABitmapIsInOneContextOnly)
{
    const HDC screen = GetDC(nullptr);
    const HDC a = CreateCompatibleDC(screen), b = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, 2, 2);
    EXPECT_TRUE(SelectObject(a, bitmap));
    EXPECT_FALSE(SelectObject(b, bitmap));
    EXPECT_FALSE(SelectObject(screen, bitmap)) << "no memory context";
    EXPECT_TRUE(DeleteDC(a));
    EXPECT_TRUE(SelectObject(b, bitmap));
    EXPECT_FALSE(DeleteDC(screen));
    EXPECT_FALSE(SelectObject(b, nullptr));
    EXPECT_FALSE(CreateCompatibleBitmap(nullptr, 2, 2));
}

TEST_F(Drawing, AContextBelongsToItsThread)
{
    static HDC dc;
    dc = CreateCompatibleDC(nullptr);
    const LPTHREAD_START_ROUTINE draw = [](void*) -> DWORD {
        EXPECT_FALSE(BitBlt(dc, 0, 0, 1, 1, nullptr, 0, 0, WHITENESS));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        EXPECT_FALSE(SelectObject(dc, GetStockObject(BLACK_PEN)));
        EXPECT_FALSE(DeleteDC(dc));
        return 0;
    };
    CreateThread(nullptr, 0, draw, nullptr, 0, nullptr);
    Sleep(1);
    EXPECT_TRUE(BitBlt(dc, 0, 0, 1, 1, nullptr, 0, 0, WHITENESS));
}

TEST_F(Drawing, PaintErasesAndRecords)
{
    OnMessage = [](HWND window, const Received& received) {
        if (received.message != WM_PAINT) return false;
        PAINTSTRUCT paint;
        const HDC dc = BeginPaint(window, &paint);
        EXPECT_FALSE(paint.fErase);
        DrawTextW(dc, L"ab", -1, &paint.rcPaint, DT_SINGLELINE);
        SelectObject(dc, GetStockObject(HOLLOW_BRUSH));
        Ellipse(dc, 15, 5, 19, 9);
        EndPaint(window, &paint);
        return true;
    };
    UpdateWindow(Window);
    EXPECT_EQ(CountMessages(WM_ERASEBKGND), 1u);
    ASSERT_EQ(HeadlessPaintedTexts(Window).size(), 1u);
    EXPECT_EQ(HeadlessPaintedTexts(Window)[0].text, L"ab");
    EXPECT_EQ(HeadlessPaintedShapes(Window), std::vector<std::string>{"Ellipse 15 5 19 9"});
    EXPECT_EQ(At(19, 9), White);
    EXPECT_EQ(At(16, 6), White) << "a hollow inside";
    EXPECT_EQ(At(16, 5), 0u) << "a black outline";
    UpdateWindow(Window);
    EXPECT_EQ(CountMessages(WM_PAINT), 1u) << "nothing to paint";
    InvalidateRect(Window, nullptr, FALSE);
    HeadlessPumpMessages();
    EXPECT_EQ(CountMessages(WM_PAINT), 2u);
    EXPECT_EQ(CountMessages(WM_ERASEBKGND), 1u);
    EXPECT_EQ(HeadlessPaintedTexts(Window).size(), 1u) << "of the last paint only";
    EXPECT_EQ(HeadlessInvalidations(Window), std::vector<bool>{false});
    InvalidateRect(Window, nullptr, TRUE);
    EXPECT_EQ(HeadlessInvalidations(Window), (std::vector<bool>{false, true}));
    HeadlessClearInvalidations(Window);
    EXPECT_TRUE(HeadlessInvalidations(Window).empty());
    EXPECT_EQ(HeadlessGdiObjects(), 0u);
}

TEST_F(Drawing, ThePaintedAreaIsTheInvalidOne)
{
    UpdateWindow(Window);
    const RECT a = {1, 2, 3, 4}, b = {2, 3, 8, 9};
    InvalidateRect(Window, &a, FALSE);
    InvalidateRect(Window, &b, FALSE);
    PAINTSTRUCT paint;
    BeginPaint(Window, &paint);
    EXPECT_EQ(paint.rcPaint.left, 1);
    EXPECT_EQ(paint.rcPaint.bottom, 9);
    EndPaint(Window, &paint);
}

TEST_F(Drawing, Text)
{
    const HDC dc = GetDC(Window);
    RECT area{};
    EXPECT_EQ(DrawTextW(dc, L"A", -1, &area, DT_CALCRECT), 13);
    EXPECT_EQ(area.right, 6);
    EXPECT_EQ(area.bottom, 13);
    EXPECT_EQ(DrawTextW(dc, L"&ab\nc", -1, &area, DT_CALCRECT), 26);
    EXPECT_EQ(area.right, 12);
    EXPECT_EQ(DrawTextW(dc, L"&ab\nc", -1, &area, DT_CALCRECT | DT_NOPREFIX | DT_SINGLELINE), 13);
    EXPECT_EQ(area.right, 30);
    HeadlessSetScreenFont(4, 5);
    const LOGFONTW wide = {-8, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L""};
    const HFONT font = CreateFontIndirectW(&wide);
    SelectObject(dc, font);
    DrawTextW(dc, L"A", 1, &area, DT_CALCRECT);
    EXPECT_EQ(area.right, 7);
    EXPECT_EQ(area.bottom, 8);

    SelectObject(dc, GetStockObject(13));
    EXPECT_EQ(SetTextColor(dc, RGB(255, 0, 0)), 0u);
    EXPECT_EQ(SetBkColor(dc, RGB(0, 0, 255)), RGB(255, 255, 255));
    const RECT line = {0, 0, 20, 5};
    EXPECT_TRUE(ExtTextOutW(dc, 4, 0, ETO_OPAQUE, &line, L"x ", 2, nullptr));
    const std::vector<uint32_t> pixels = HeadlessPixels(Window);
    EXPECT_EQ(pixels[0], 0x0000FFu);
    EXPECT_EQ(pixels[9], 0x0000FFu) << "a blank";
    EXPECT_GT(std::count(pixels.begin(), pixels.end(), 0xFF0000u), 0);
    EXPECT_EQ(pixels[5 * 20], 0u) << "below the line";
    EXPECT_EQ(HeadlessPaintedTexts(Window).back().x, 4);
    EXPECT_EQ(SetBkMode(dc, TRANSPARENT), OPAQUE);
}

TEST_F(Drawing, CentredText)
{
    const HDC dc = GetDC(Window);
    RECT area = {0, 0, 20, 33};
    DrawTextW(dc, L"ab", -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    EXPECT_EQ(HeadlessPaintedTexts(Window).at(0).x, 4);
    EXPECT_EQ(HeadlessPaintedTexts(Window).at(0).y, 10);
}

TEST_F(Drawing, FillAndRectangle)
{
    const HDC dc = GetDC(Window);
    const HBRUSH green = CreateSolidBrush(RGB(0, 255, 0));
    const RECT area = {-5, 2, 3, 40};
    EXPECT_TRUE(FillRect(dc, &area, green));
    EXPECT_EQ(At(0, 2), 0x00FF00u);
    EXPECT_EQ(At(3, 2), 0u);
    SelectObject(dc, green);
    EXPECT_TRUE(Rectangle(dc, 10, 0, 14, 4));
    EXPECT_EQ(At(10, 0), 0u);
    EXPECT_EQ(At(11, 1), 0x00FF00u);
    EXPECT_FALSE(DeleteObject(green));
    EXPECT_TRUE(ReleaseDC(Window, dc));
    EXPECT_TRUE(DeleteObject(green));
    EXPECT_FALSE(FillRect(dc, &area, green));
    EXPECT_TRUE(DeleteObject(GetStockObject(WHITE_BRUSH))) << "stays all the same";
    EXPECT_TRUE(GetStockObject(WHITE_BRUSH));
    EXPECT_FALSE(GetStockObject(99));
}

TEST_F(Drawing, BitmapOfTheResources)
{
    const HBITMAP bitmap = LoadBitmapW(nullptr, L"6x8");
    ASSERT_TRUE(bitmap);
    const HDC dc = GetDC(Window), memory = CreateCompatibleDC(dc);
    SelectObject(memory, bitmap);
    EXPECT_TRUE(BitBlt(dc, 0, 0, 6, 8, memory, 0, 0, SRCCOPY));
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 6; ++x) EXPECT_TRUE(At(x, y) == 0 || At(x, y) == White);
    EXPECT_FALSE(LoadBitmapW(nullptr, L"7x8"));
}

TEST_F(Drawing, AWindowThatNeverPaintsIsTold)
{
    OnMessage = [](HWND, const Received& received) { return received.message == WM_PAINT; };
    EXPECT_DEATH(HeadlessPumpMessages(), "asked to paint for ever");
}

TEST_F(Drawing, AFailingPaintEnds)
{
    OnMessage = [](HWND window, const Received& received) {
        if (received.message != WM_PAINT) return false;
        PAINTSTRUCT paint;
        EXPECT_FALSE(BeginPaint(window, &paint));
        return true;
    };
    HeadlessFailCall("BeginPaint", 1, ERROR_NOT_ENOUGH_MEMORY, FailMode::FromHereOn);
    HeadlessPumpMessages();
    EXPECT_EQ(CountMessages(WM_PAINT), 1u);
}

TEST_F(Drawing, InvalidatingNothingMeansEverything)
{
    InvalidateRect(nullptr, nullptr, TRUE);
    EXPECT_EQ(HeadlessInvalidations(Window), std::vector<bool>{true});
}

} // namespace
