// SPDX-License-Identifier: MIT
// Fixture of the tests of the Communication dialog.
#pragma once

#include "link/communication_dialog.h"
#include "link/link_state.h"
#include "link/write_queue.h"
#include "resources/resource_ids.h"
#include "tests/unit/support/product_test.h"

// A message of each protocol that only shows that there is a receiver.
const std::string Nmea = Sentence("GPVTG,91.5,T,,M,20,N,,K,A");
const std::string Sirf("\xA0\xA2\x00\x02\x29\x00\x00\x29\xB0\xB3", 10);

constexpr const wchar_t* BuiltInDrivers = L"Drivers\\BuiltIn";
constexpr const wchar_t* RegisteredDrivers = L"Drivers\\RegisteredDevice";

class CommunicationTest : public ProductTest
{
protected:
    // Opens the dialog, lets the user act in it and closes it.
    static void InDialog(std::function<void(HWND)> act)
    {
        HeadlessUser([act = std::move(act)] {
            const HWND dialog = HeadlessTopDialog();
            act(dialog);
            if (HeadlessTopDialog() == dialog) HeadlessCommand(dialog, IDCANCEL);
        });
        OpenDialog(::CommunicationDialog);
    }

    static void Select(HWND dialog, int port, int rate)
    {
        HeadlessChoose(dialog, CONTROL_COM_PORT, port);
        HeadlessChoose(dialog, CONTROL_COM_BAUDRATE, rate);
    }

    static void AddDriver(const wchar_t* drivers, const wchar_t* key, uint32_t index, const wchar_t* name)
    {
        const std::wstring path = std::wstring(drivers) + L"\\" + key;
        HeadlessRegistrySetText(HKEY_LOCAL_MACHINE, path.c_str(), L"Prefix", L"COM");
        HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, path.c_str(), L"Index", index);
        if (name) HeadlessRegistrySetText(HKEY_LOCAL_MACHINE, path.c_str(), L"FriendlyName", name);
    }

    // The entries of the dialog's port list.
    static std::vector<std::wstring> PortLabels()
    {
        std::vector<std::wstring> labels;
        InDialog([&](HWND dialog) { labels = HeadlessItems(dialog, CONTROL_COM_PORT); });
        return labels;
    }
};
