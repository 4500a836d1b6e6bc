// SPDX-License-Identifier: MIT
// Names from outside: labels of the ports out of the driver registry, folders and the name of a log, system
// texts and the driver's answers in a report, all in one visit to the Communication dialog.
#include "resources/resource_ids.h"
#include "tests/fuzz/input.h"
#include "tests/support/fresh_program.h"
#include "tests/support/whole_program.h"

namespace
{

constexpr const wchar_t* DriverKeys[] = {L"Drivers\\BuiltIn\\", L"Drivers\\RegisteredDevice\\"};
constexpr const wchar_t* DriverValues[] = {L"Prefix", L"Index", L"FriendlyName"};
constexpr const wchar_t* InfraredKeys[] = {L"IrDA", L"IrDA\\parms", L"IrDA\\linkage",
                                           L"IrDA\\parms\\linkage"};
constexpr const wchar_t* InfraredValues[] = {L"Port", L"Bind"};
constexpr int Folders[] = {CSIDL_PERSONAL, CSIDL_APPDATA};
constexpr DWORD Types[] = {REG_SZ, REG_DWORD, REG_MULTI_SZ, 3};

void StoreValue(const std::wstring& key, const wchar_t* name, Input& input)
{
    const uint8_t kind = input.Byte();
    if (kind & 1)
        HeadlessRegistrySetText(HKEY_LOCAL_MACHINE, key.c_str(), name, input.Text().c_str());
    else if (kind & 2)
        HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, key.c_str(), name, input.Byte());
    else
        HeadlessRegistrySetBytes(HKEY_LOCAL_MACHINE, key.c_str(), name, Types[kind / 4 % std::size(Types)],
                                 input.Line());
}

// A normal driver, except for its name and label.
void AddDriver(Input& input)
{
    const std::wstring key = DriverKeys[input.Below(2)] + input.Text();
    HeadlessRegistrySetText(HKEY_LOCAL_MACHINE, key.c_str(), L"Prefix", L"COM");
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, key.c_str(), L"Index", input.Byte() % 16u);
    HeadlessRegistrySetText(HKEY_LOCAL_MACHINE, key.c_str(), L"FriendlyName", input.Text().c_str());
}

void SetUpOne(Input& input, HeadlessPort& port)
{
    switch (input.Below(12)) {
    case 0: AddDriver(input); break;
    case 1: {
        const std::wstring key = DriverKeys[input.Below(2)] + input.Text();
        StoreValue(key, DriverValues[input.Below(std::size(DriverValues))], input);
        break;
    }
    case 2: {
        const std::wstring key = std::wstring(L"Comm\\") + InfraredKeys[input.Below(std::size(InfraredKeys))];
        StoreValue(key, InfraredValues[input.Below(2)], input);
        break;
    }
    case 3: {
        const std::wstring key = L"Comm\\" + input.Text();
        StoreValue(key, InfraredValues[input.Below(2)], input);
        break;
    }
    case 4: HeadlessSetFolder(Folders[input.Below(2)], input.Text()); break;
    case 5: {
        const std::wstring path = input.Text();
        HeadlessAnswerSaveDialog(path, 1 + static_cast<DWORD>(input.Below(4)));
        break;
    }
    case 6: HeadlessSetPlatformType(input.Text().c_str()); break;
    case 7: HeadlessSetOemInfo(input.Text().c_str()); break;
    case 8: port.properties = input.Raw<COMMPROP>(); break;
    case 9: port.dcb = input.Raw<DCB>(); break;
    case 10: port.timeouts = input.Raw<COMMTIMEOUTS>(); break;
    default: port.errors = input.Raw<DWORD>(); port.status = input.Raw<COMSTAT>();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    const uint8_t is = input.Byte();
    const uint32_t number = is % 10;

    StartAfresh();
    HeadlessSetScreenFont(2, 4); // painting takes time
    HeadlessSetClientSize(8, 30);
    HeadlessPort& port = HeadlessAddPort(number);
    if (is & 16) HeadlessSetPlatformType(L"SmartPhone");
    while (!input.Ended()) SetUpOne(input, port);
    // A driver whose reads wait would keep the reader from seeing that its port was closed.
    port.timeouts.ReadIntervalTimeout = INFINITE;
    port.timeouts.ReadTotalTimeoutMultiplier = port.timeouts.ReadTotalTimeoutConstant = 0;
    RunWholeProgram(L"", [&] {
        InDialog(Dialogs[1], [&](HWND dialog) {
            if (HeadlessItems(dialog, CONTROL_COM_PORT).size() <= number) return;
            HeadlessChoose(dialog, CONTROL_COM_PORT, static_cast<int>(number));
            HeadlessChoose(dialog, CONTROL_COM_BAUDRATE, 2);
            for (const int button : {CONTROL_COM_OPEN, CONTROL_COM_LOG_OPEN}) HeadlessClick(dialog, button);
            HeadlessReceive(port, "$GPXYZ*61\r\n");
            HeadlessPass(200);
            for (const int button : {CONTROL_COM_LOG_CLOSE, CONTROL_COM_CLOSE}) HeadlessClick(dialog, button);
        });
    });
    return 0;
}
