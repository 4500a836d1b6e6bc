// SPDX-License-Identifier: MIT
#include "link/serial_report.h"

#include <cstring>
#include <fstream>
#include <sstream>

#include "link/serial_port.h"
#include "tests/unit/link/communication_test.h"
#include "ui/dialog_support.h"

namespace
{

const std::wstring Documents = L"\\My Documents\\";

class SerialReport : public CommunicationTest
{
protected:
    static std::string Expected(const char* name)
    {
        std::ifstream file(std::string(TEST_DATA) + "/" + name, std::ios::binary);
        std::ostringstream content;
        content << file.rdbuf();
        EXPECT_TRUE(file) << name;
        return content.str();
    }

    // Opens the port through the dialog, which writes the report.
    static void Open(int port)
    {
        InDialog([=](HWND dialog) {
            Select(dialog, port, 3);
            HeadlessClick(dialog, CONTROL_COM_OPEN);
        });
    }

    // The file of the report for a port with this label after "COMn: ".
    static bool WritesFile(uint32_t index, const wchar_t* name, const std::wstring& path)
    {
        AddDriver(BuiltInDrivers, L"A", index, name);
        HeadlessAddPort(index);
        Open(static_cast<int>(index));
        PortClose();
        return HeadlessFileExists(path);
    }
};

TEST_F(SerialReport, OfAUsualDriver)
{
    AddDriver(BuiltInDrivers, L"A", 5, L"Serial Cable");
    HeadlessSetPlatformType(L"PocketPC");
    HeadlessSetOemInfo(L"Maker M5");
    HeadlessPort& port = HeadlessAddPort(5);
    port.properties = {};
    port.properties.wPacketLength = 0x40;
    port.properties.wPacketVersion = 0xFFFF;
    port.properties.dwServiceMask = 1;
    port.properties.dwMaxTxQueue = 16;
    port.properties.dwMaxRxQueue = 2048;
    port.properties.dwMaxBaud = 0x20000;
    port.properties.dwProvSubType = 1;
    port.properties.dwProvCapabilities = 0x1FF;
    port.properties.dwSettableParams = 0x7F;
    port.properties.dwSettableBaud = 0x10066B58;
    port.properties.wSettableData = 0x0F;
    port.properties.wSettableStopParity = 0x1F05;
    port.properties.dwCurrentRxQueue = 2048;
    port.dcb = {};
    port.dcb.DCBlength = sizeof port.dcb;
    port.dcb.BaudRate = 9600;
    port.dcb.fBinary = 1;
    port.dcb.fDtrControl = 1;
    port.dcb.fRtsControl = 1;
    port.dcb.XonLim = port.dcb.XoffLim = 100;
    port.dcb.ByteSize = 8;
    port.dcb.XonChar = 17;
    port.dcb.XoffChar = 19;
    port.dcb.EvtChar = 10;
    port.timeouts = {250, 10, 100, 0, 0};
    port.errors = 0x12;
    port.status = {};
    port.status.fCtsHold = 1;
    port.status.cbInQue = 36;
    Open(5);
    EXPECT_EQ(HeadlessFileContent(Documents + L"COM5; Serial Cable.txt"), Expected("report-cable.txt"));
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(SerialReport, OfADriverWithEveryFlagOnAKeypadDevice)
{
    HeadlessSetPlatformType(L"SmartPhone");
    HeadlessSetOemInfo(L"", ERROR_ACCESS_DENIED);
    ChooseLayout();
    AddDriver(BuiltInDrivers, L"A", 7, L"Bluetooth\u00FC\u20AC");
    HeadlessPort& port = HeadlessAddPort(7);
    std::memset(&port.properties, 0xFF, sizeof port.properties);
    port.properties.dwMaxBaud = 0x10000000;
    port.properties.dwProvSubType = 0x102;
    std::memset(&port.dcb, 0xFF, sizeof port.dcb);
    port.dcb.DCBlength = sizeof port.dcb;
    std::memset(&port.timeouts, 0xFF, sizeof port.timeouts);
    std::memset(&port.status, 0xFF, sizeof port.status);
    port.errors = 0xFFFFFFFF;
    Open(7);
    EXPECT_EQ(HeadlessFileContent(L"\\Application Data\\COM7; Bluetooth\u00FC\u20AC.txt"),
              Expected("report-every-flag.txt"));
}

TEST_F(SerialReport, OfADriverThatTellsNothing)
{
    HeadlessPort& port = HeadlessAddPort(1);
    port.properties = {};
    port.properties.dwServiceMask = 0x30;
    port.properties.dwReserved1 = 0x1A;
    port.properties.dwMaxBaud = 0x12345;
    port.properties.dwProvSubType = 0x99;
    port.properties.dwProvSpec1 = 0xAB;
    port.properties.dwProvSpec2 = 0xCD;
    HeadlessFailCall("GetCommState", 1, ERROR_GEN_FAILURE);
    HeadlessFailCall("GetCommTimeouts", 1, ERROR_GEN_FAILURE);
    HeadlessFailCall("ClearCommError", 1, ERROR_GEN_FAILURE);
    Open(1);
    EXPECT_EQ(HeadlessFileContent(Documents + L"COM1;.txt"), Expected("report-silent-driver.txt"));
    EXPECT_EQ(HeadlessBoxes().size(), 3u); // of the failed calls; the report itself is silent
}

TEST_F(SerialReport, EachSubTypeAndRateHasItsName)
{
    const std::pair<uint32_t, const char*> subTypes[] = {
        {0, "PST_UNSPECIFIED"}, {6, "PST_MODEM"}, {0x21, "PST_FAX"}, {0x103, "PST_X25"}, {7, "7"}};
    const std::pair<uint32_t, const char*> rates[] = {
        {1, "BAUD_075"}, {0x8000, "BAUD_56K"}, {0x40000, "BAUD_57600"}, {3, "3"}, {0, "0"}};
    HeadlessPort& port = HeadlessAddPort(2);
    for (size_t i = 0; i < 5; ++i) {
        port.properties.dwProvSubType = subTypes[i].first;
        port.properties.dwMaxBaud = rates[i].first;
        InDialog([](HWND dialog) {
            Select(dialog, 2, 3);
            HeadlessClick(dialog, CONTROL_COM_OPEN);
            HeadlessClick(dialog, CONTROL_COM_CLOSE);
        });
        const std::string report = HeadlessFileContent(Documents + L"COM2;.txt");
        EXPECT_NE(report.find(std::string("\r\ndwMaxBaud\t") + rates[i].second + "\r\n"), report.npos);
        EXPECT_NE(report.find(std::string("\r\ndwProvSubType\t") + subTypes[i].second + "\r\n"), report.npos);
    }
}

// ---- File names ---------------------------------------------------------------------------------------

TEST_F(SerialReport, BackslashesOfTheLabelBecomeMarks)
{
    EXPECT_TRUE(WritesFile(5, L"USB\\Serial", Documents + L"COM5; USB!Serial.txt"));
}

TEST_F(SerialReport, ColonsOfTheLabelBecomeSemicolons)
{
    EXPECT_TRUE(WritesFile(5, L"a:b:", Documents + L"COM5; a;b;.txt"));
}

TEST_F(SerialReport, NameThatEndsInADigitGetsASemicolon)
{
    EXPECT_TRUE(WritesFile(4, L"Port 2", Documents + L"COM4; Port 2;.txt"));
}

TEST_F(SerialReport, LabelMustFitInto64CharactersWithTheFolder)
{
    // Folder and separator 14, "COM4: " 6, terminator 1: 43 are left.
    const std::wstring fits(43, L'x');
    EXPECT_FALSE(WritesFile(4, (fits + L"x").c_str(), Documents + L"COM4; " + fits + L"x.txt"));
    EXPECT_TRUE(WritesFile(5, fits.c_str(), Documents + L"COM5; " + fits + L".txt"));
}

TEST_F(SerialReport, LongFolderLeavesNoRoom)
{
    for (const size_t length : {57u, 58u, 62u, 63u, 64u, 200u, 259u}) {
        const std::wstring folder = L"\\" + std::wstring(length - 1, L'f');
        HeadlessSetFolder(CSIDL_PERSONAL, folder);
        HeadlessAddPort(1);
        InDialog([](HWND dialog) {
            Select(dialog, 1, 3);
            HeadlessClick(dialog, CONTROL_COM_OPEN);
            HeadlessClick(dialog, CONTROL_COM_CLOSE);
        });
        EXPECT_EQ(HeadlessFileExists(folder + L"\\COM1;.txt"), length == 57) << length;
    }
}

TEST_F(SerialReport, FolderKeepsItsOwnColonsAndBackslashes)
{
    HeadlessSetFolder(CSIDL_PERSONAL, L"C:\\a\\b");
    EXPECT_TRUE(WritesFile(4, L"x", L"C:\\a\\b\\COM4; x.txt"));
}

TEST_F(SerialReport, UnknownFolderIsTheRoot)
{
    HeadlessSetFolder(CSIDL_PERSONAL, L"");
    EXPECT_TRUE(WritesFile(4, L"x", L"\\COM4; x.txt"));
}

TEST_F(SerialReport, EarlierReportIsReplaced)
{
    HeadlessWriteFile(Documents + L"COM1;.txt", std::string(5000, 'z'));
    HeadlessAddPort(1);
    Open(1);
    const std::string report = HeadlessFileContent(Documents + L"COM1;.txt");
    EXPECT_EQ(report.find("zzz"), report.npos);
    EXPECT_LT(report.size(), 5000u);
}

// ---- When, and failures -------------------------------------------------------------------------------

TEST_F(SerialReport, TellsHowThePortWasFound)
{
    HeadlessPort& port = HeadlessAddPort(1);
    port.dcb.BaudRate = 2400;
    Open(1); // at 9600
    EXPECT_EQ(port.rates, std::vector<DWORD>{9600});
    EXPECT_NE(HeadlessFileContent(Documents + L"COM1;.txt").find("BaudRate\t2400\r\n"), std::string::npos);
}

TEST_F(SerialReport, OnlyWhereTheCallerWantsIt)
{
    HeadlessAddPort(1);
    InDialog([](HWND dialog) {
        HeadlessChoose(dialog, CONTROL_COM_PORT, 1);
        EXPECT_TRUE(PortOpen(L"COM1:", 4800));
        EXPECT_FALSE(HeadlessFileExists(Documents + L"COM1;.txt"));
        PortClose();
        EXPECT_TRUE(PortOpen(L"COM1:", 4800, L"COM1: of another name"));
        PortClose();
    });
    EXPECT_TRUE(HeadlessFileExists(Documents + L"COM1; of another name.txt"));
}

TEST_F(SerialReport, NoLabelNoReport)
{
    WriteSerialReport(L"", {}, {}, {}, 0, {});
    EXPECT_EQ(HeadlessOpenHandles(), 0u);
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_FALSE(HeadlessFileExists(Documents + L".txt"));
}

TEST_F(SerialReport, FileThatCannotBeMadeIsReported)
{
    HeadlessPort& port = HeadlessAddPort(1);
    HeadlessFailCall("CreateFileW", 2, ERROR_DISK_FULL); // the first opens the port
    Open(1);
    ASSERT_EQ(HeadlessBoxes().size(), 1u);
    EXPECT_EQ(HeadlessBoxes()[0].caption, L"CreateFile File 2");
    EXPECT_TRUE(port.isOpen);
}

TEST_F(SerialReport, WritesAreNotChecked)
{
    HeadlessPort& port = HeadlessAddPort(1);
    HeadlessDiskFullAfter(300);
    Open(1);
    EXPECT_TRUE(HeadlessBoxes().empty());
    EXPECT_TRUE(port.isOpen);
    EXPECT_EQ(HeadlessFileContent(Documents + L"COM1;.txt").rfind("This file was created by", 0), 0u);
}

TEST_F(SerialReport, UnknownSystemLeavesTheTextEmpty)
{
    HeadlessFailCall("GetVersionExW", 1, ERROR_INVALID_PARAMETER);
    HeadlessAddPort(1);
    Open(1);
    EXPECT_NE(
        HeadlessFileContent(Documents + L"COM1;.txt")
            .find("Windows Version:\t0.0.0\r\nCSD Version:\t\r\nPlatform:\t\r\nOEM Info:\t\r\n\r\nCOM1:"),
        std::string::npos);
}

TEST_F(SerialReport, LongSystemTextsStayInTheirBlock)
{
    HeadlessSetOemInfo(std::wstring(900, L'o').c_str());
    HeadlessAddPort(1);
    Open(1);
    const std::string report = HeadlessFileContent(Documents + L"COM1;.txt");
    EXPECT_NE(report.find("\r\n\r\nCOM1:\r\n\r\nCommProp:"), report.npos);
}

} // namespace
