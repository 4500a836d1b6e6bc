// SPDX-License-Identifier: MIT
// Serial ports with a scripted device.
#include <gtest/gtest.h>

#include "tests/unit/platform/test_window.h"

namespace
{

constexpr COMMTIMEOUTS AtOnce = {INFINITE, 0, 0, 0, 0};

struct Ports : Fresh<testing::Test> {
    HeadlessPort& Port = HeadlessAddPort(3);
    HANDLE Handle = INVALID_HANDLE_VALUE;

    void Open()
    {
        Handle = CreateFileW(L"COM3:", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        COMMTIMEOUTS timeouts = AtOnce;
        SetCommTimeouts(Handle, &timeouts);
    }
    std::string Read(DWORD most = 1000)
    {
        std::string bytes(most, 0);
        DWORD read = 0;
        EXPECT_TRUE(ReadFile(Handle, bytes.data(), most, &read, nullptr));
        return bytes.substr(0, read);
    }
    void SetRate(DWORD rate)
    {
        DCB dcb{};
        EXPECT_TRUE(GetCommState(Handle, &dcb));
        dcb.BaudRate = rate;
        EXPECT_TRUE(SetCommState(Handle, &dcb));
    }
};

TEST_F(Ports, OpenAndClose)
{
    EXPECT_EQ(CreateFileW(L"COM4:", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    Open();
    EXPECT_TRUE(Port.isOpen);
    EXPECT_EQ(CreateFileW(L"COM3:", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_TRUE(CloseHandle(Handle));
    EXPECT_FALSE(Port.isOpen);
    EXPECT_EQ(Port.opens, 1u);
    EXPECT_EQ(Port.closes, 1u);
    EXPECT_EQ(&HeadlessGetPort(3), &Port);
    EXPECT_DEATH(HeadlessGetPort(4), "was not added");
    char byte;
    DWORD read = 1;
    EXPECT_FALSE(ReadFile(Handle, &byte, 1, &read, nullptr));
    EXPECT_EQ(read, 0u);
    DCB dcb{};
    EXPECT_FALSE(GetCommState(Handle, &dcb));
}

TEST_F(Ports, SettingsAndReports)
{
    Port.errors = 0x10;
    Port.status.cbInQue = 4;
    Port.properties.dwMaxBaud = 0x12345;
    Open();
    COMMPROP properties{};
    EXPECT_TRUE(GetCommProperties(Handle, &properties));
    EXPECT_EQ(properties.dwMaxBaud, 0x12345u);
    DWORD errors = 0;
    COMSTAT status{};
    EXPECT_TRUE(ClearCommError(Handle, &errors, &status));
    EXPECT_EQ(errors, 0x10u);
    EXPECT_EQ(status.cbInQue, 4u);
    SetRate(4800);
    SetRate(38400);
    EXPECT_EQ(Port.rates, (std::vector<DWORD>{4800, 38400}));
    EXPECT_EQ(Port.dcb.BaudRate, 38400u);
    DCB bad{};
    EXPECT_FALSE(SetCommState(Handle, &bad)) << "without its length";
    EXPECT_TRUE(EscapeCommFunction(Handle, SETIR));
    EXPECT_EQ(Port.escapes, std::vector<DWORD>{SETIR});
    EXPECT_TRUE(SetCommMask(Handle, 0));
    COMMTIMEOUTS timeouts{};
    EXPECT_TRUE(GetCommTimeouts(Handle, &timeouts));
    EXPECT_EQ(timeouts.ReadIntervalTimeout, INFINITE);
}

TEST_F(Ports, BytesComeInTheirTime)
{
    Open();
    EXPECT_EQ(Read(), "");
    HeadlessReceive(Port, "ab");
    HeadlessReceive(Port, "cdef", 1000);
    HeadlessReceiveAfter(Port, 100, "gh", 1000);
    EXPECT_EQ(Read(1), "a");
    EXPECT_EQ(Read(), "bc");
    Sleep(2);
    EXPECT_EQ(Read(), "de");
    Sleep(97);
    EXPECT_EQ(Read(), "f");
    Sleep(1);
    EXPECT_EQ(Read(), "g");
    Sleep(1);
    EXPECT_EQ(Read(), "h");
}

TEST_F(Ports, WhatIsQueuedBeforeTheOpeningComesAfterIt)
{
    HeadlessReceive(Port, "ab");
    HeadlessReceiveAfter(Port, 10, "cd");
    Sleep(5000);
    Open();
    EXPECT_EQ(Read(), "ab");
    Sleep(10);
    EXPECT_EQ(Read(), "cd");
}

TEST_F(Ports, WhatComesWhileClosedIsLost)
{
    HeadlessStream(Port, "0123456789", 1000);
    Sleep(100000);
    Open();
    EXPECT_EQ(Read(), "");
    Sleep(10);
    EXPECT_EQ(Read(), "1234567890");
    CloseHandle(Handle);
    Sleep(5);
    Open();
    Sleep(2);
    EXPECT_EQ(Read(), "67");
}

TEST_F(Ports, AnswersComeBetweenRepetitionsOfTheStream)
{
    Open();
    HeadlessStream(Port, "aaaa.", 1000);
    Sleep(6);
    HeadlessReceive(Port, "ANSWER", 0);
    Sleep(13);
    EXPECT_EQ(Read(), "aaaa.aaaa.ANSWERaaaa.aaaa.");
    HeadlessStream(Port, "", 0);
    Sleep(100);
    EXPECT_EQ(Read(), "");
    EXPECT_DEATH(HeadlessStream(Port, "x", 0), "never ends");
}

TEST_F(Ports, NoiseAtTheWrongRate)
{
    Port.deviceRate = 38400;
    Open();
    SetRate(4800);
    const std::string text = "$GPGGA,1*00\r\n\xA0\xA2";
    for (int i = 0; i < 200; ++i) HeadlessReceive(Port, text);
    const std::string noise = Read(100000);
    EXPECT_EQ(noise.size(), text.size() * 200);
    EXPECT_EQ(noise.find_first_of("$\xA0"), noise.npos);
    EXPECT_EQ(noise.find("GPGGA"), noise.npos);
    HeadlessReceive(Port, text);
    SetRate(38400);
    HeadlessReceive(Port, text);
    const std::string both = Read();
    EXPECT_EQ(both.substr(text.size()), text);
    EXPECT_NE(both.substr(0, text.size()), text) << "it came before the rate was right";
}

TEST_F(Ports, Writes)
{
    Open();
    Port.onWrite = [](HeadlessPort& port, std::string_view bytes) {
        HeadlessReceive(port, "<" + std::string(bytes) + ">");
    };
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(Handle, "hello", 5, &written, nullptr));
    EXPECT_EQ(Read(), "<hello>");
    Port.acceptBytes = 2;
    EXPECT_TRUE(WriteFile(Handle, "world", 5, &written, nullptr));
    EXPECT_EQ(written, 2u);
    EXPECT_EQ(Port.sent, "hellowo");
    EXPECT_EQ(Port.writes, (std::vector<std::string>{"hello", "wo"}));
}

TEST_F(Ports, ReadsThatWait)
{
    Open();
    COMMTIMEOUTS timeouts = {0, 0, 100, 0, 0};
    SetCommTimeouts(Handle, &timeouts);
    EXPECT_EQ(Read(1), "");
    EXPECT_EQ(HeadlessElapsed(), 100u);
    HeadlessReceiveAfter(Port, 30, "x");
    EXPECT_EQ(Read(1), "x");
    EXPECT_EQ(HeadlessElapsed(), 130u);

    timeouts = {};
    SetCommTimeouts(Handle, &timeouts);
    static HANDLE handle;
    handle = Handle;
    const LPTHREAD_START_ROUTINE reader = [](void*) -> DWORD {
        char byte;
        DWORD read = 0;
        return ReadFile(handle, &byte, 1, &read, nullptr) ? 1 : 2;
    };
    const HANDLE thread = CreateThread(nullptr, 0, reader, nullptr, 0, nullptr);
    Sleep(1000);
    DWORD code = 0;
    GetExitCodeThread(thread, &code);
    EXPECT_EQ(code, STILL_ACTIVE);
    CloseHandle(Handle);
    Sleep(1);
    GetExitCodeThread(thread, &code);
    EXPECT_EQ(code, 2u) << "closing ends the read";
}

} // namespace
