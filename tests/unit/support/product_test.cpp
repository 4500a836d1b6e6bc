// SPDX-License-Identifier: MIT
#include "tests/unit/support/product_test.h"

#include "link/link_state.h"
#include "link/reader_thread.h"
#include "link/write_queue.h"
#include "tests/support/fresh_program.h"
#include "tests/support/settings_key.h"

namespace
{

std::string Narrow(const std::wstring& text)
{
    std::string out;
    for (const wchar_t c : text) out += c < 0x80 ? static_cast<char>(c) : '?';
    return out;
}

LRESULT CALLBACK MainProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == MessagePostedBox) {
        ShowPostedBox(wParam, lParam);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace

ProductTest::ProductTest()
{
    StartAfresh();
}

ProductTest::~ProductTest()
{
    EXPECT_EQ(HeadlessStepsLeft(), 0u) << "steps of the user did not run";
    CloseEverything();
}

HeadlessPort& ProductTest::OpenPort()
{
    HeadlessPort& port = HeadlessAddPort(3);
    PortHandle.store(
        CreateFileW(L"COM3:", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    return port;
}

HWND ProductTest::MakeMainWindow()
{
    WNDCLASSW standIn = {};
    standIn.lpszClassName = L"MainWindow";
    standIn.lpfnWndProc = MainProcedure;
    RegisterClassW(&standIn);
    const HWND window = CreateWindowExW(0, standIn.lpszClassName, L"", WS_VISIBLE, 0, 0, 240, 294, nullptr,
                                        nullptr, nullptr, nullptr);
    MainWindow.store(window);
    return window;
}

HeadlessTemplate ProductTest::FindTemplate(uint32_t number)
{
    HeadlessTemplate found;
    EXPECT_TRUE(HeadlessFindTemplate(number, found)) << number;
    return found;
}

void ProductTest::Feed(std::string_view bytes)
{
    RouteReceived(reinterpret_cast<const uint8_t*>(bytes.data()), static_cast<uint32_t>(bytes.size()));
}

void ProductTest::FeedSentence(std::string_view body)
{
    Feed(Sentence(body));
}

void ProductTest::RecogniseNmea()
{
    NmeaRecognised.store(1);
    ClearTextView();
}

std::wstring ProductTest::Line(uint32_t line)
{
    wchar_t text[TextLineCapacity];
    CopyTextLine(line, text);
    return text;
}

int32_t ProductTest::Setting(const wchar_t* name)
{
    uint32_t value = 0;
    return HeadlessRegistryGetDword(HKEY_LOCAL_MACHINE, SettingsKey, name, value)
               ? static_cast<int32_t>(value)
               : -12345;
}

void ProductTest::StoreSetting(const wchar_t* name, int32_t value)
{
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, SettingsKey, name, static_cast<uint32_t>(value));
}

std::string Sentence(std::string_view body)
{
    unsigned checksum = 0;
    for (const char c : body) checksum ^= static_cast<unsigned char>(c);
    char end[8];
    std::snprintf(end, sizeof end, "*%02X\r\n", checksum);
    return "$" + std::string(body) + end;
}

testing::AssertionResult IsBox(const HeadlessBox& box, const std::wstring& caption, const std::wstring& text)
{
    if (box.caption == caption && box.text == text && (box.type & MB_ICONINFORMATION))
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "box \"" << Narrow(box.caption) << "\": \"" << Narrow(box.text) << "\", type " << box.type;
}
