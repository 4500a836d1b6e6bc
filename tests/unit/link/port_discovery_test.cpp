// SPDX-License-Identifier: MIT
#include "link/port_discovery.h"

#include "tests/unit/link/communication_test.h"
#include "ui/dialog_support.h"

namespace
{

using Labels = std::vector<std::wstring>;

const Labels Plain = {L"COM0:", L"COM1:", L"COM2:", L"COM3:", L"COM4:",
                      L"COM5:", L"COM6:", L"COM7:", L"COM8:", L"COM9:"};

class PortDiscovery : public CommunicationTest
{
protected:
    PortDiscovery() { IrCommPortNumber = -1; }
    ~PortDiscovery() override { EXPECT_EQ(HeadlessOpenKeys(), 0u); }

    static Labels With(size_t index, const std::wstring& label)
    {
        Labels labels = Plain;
        labels[index] = label;
        return labels;
    }

    static void SetPort(const wchar_t* path, uint32_t port)
    {
        HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, path, L"Port", port);
    }

    static void Bind(const wchar_t* path, std::wstring_view drivers)
    {
        std::string bytes;
        for (const wchar_t c : drivers) bytes += {static_cast<char>(c), '\0'};
        HeadlessRegistrySetBytes(HKEY_LOCAL_MACHINE, path, L"Bind", REG_MULTI_SZ, bytes);
    }
};

// ---- Driver keys --------------------------------------------------------------------------------------

TEST_F(PortDiscovery, WithoutDriverKeysNothingIsLabelled)
{
    EXPECT_EQ(PortLabels(), Plain);
    EXPECT_EQ(ScanDriverKey(nullptr, BuiltInDrivers), static_cast<LONG>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(IrPortNumber.load(), -1);
    EXPECT_TRUE(HeadlessBoxes().empty());
}

TEST_F(PortDiscovery, DriversOfBothKeysAreLabelledAtTheirPlaces)
{
    AddDriver(RegisteredDrivers, L"USB", 9, L"USB Adapter");
    AddDriver(BuiltInDrivers, L"Serial", 0, L"Serial Cable");
    Labels labels = With(9, L"COM9: USB Adapter");
    labels[0] = L"COM0: Serial Cable";
    EXPECT_EQ(PortLabels(), labels);
    EXPECT_EQ(ScanDriverKey(nullptr, BuiltInDrivers), static_cast<LONG>(ERROR_SUCCESS));
}

TEST_F(PortDiscovery, BuiltInDriverWinsOverARegisteredOne)
{
    AddDriver(RegisteredDrivers, L"A", 4, L"Registered");
    AddDriver(BuiltInDrivers, L"A", 4, L"Built in");
    EXPECT_EQ(PortLabels(), With(4, L"COM4: Built in"));
}

TEST_F(PortDiscovery, WithoutAFriendlyNameTheKeyNamesThePort)
{
    AddDriver(BuiltInDrivers, L"Serial2", 2, nullptr);
    EXPECT_EQ(PortLabels(), With(2, L"COM2: Serial2"));
}

TEST_F(PortDiscovery, FriendlyNameOfAnotherTypeOrLengthIsNotRead)
{
    AddDriver(BuiltInDrivers, L"A", 1, nullptr);
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, L"Drivers\\BuiltIn\\A", L"FriendlyName", 0x410041);
    AddDriver(BuiltInDrivers, L"B", 2, std::wstring(500, L'x').c_str());
    Labels labels = With(1, L"COM1: A");
    labels[2] = L"COM2: B";
    EXPECT_EQ(PortLabels(), labels);
}

TEST_F(PortDiscovery, PrefixWithoutIndexLabelsNothing)
{
    HeadlessRegistrySetText(HKEY_LOCAL_MACHINE, L"Drivers\\BuiltIn\\A", L"Prefix", L"COM");
    EXPECT_EQ(PortLabels(), Plain);
}

TEST_F(PortDiscovery, PrefixIsComparedWithCaseAndToItsEnd)
{
    for (const wchar_t* prefix : {L"com", L"COMM", L"CO", L"", L"BTH"}) {
        AddDriver(BuiltInDrivers, L"A", 3, L"Name");
        HeadlessRegistrySetText(HKEY_LOCAL_MACHINE, L"Drivers\\BuiltIn\\A", L"Prefix", prefix);
        EXPECT_EQ(PortLabels(), Plain);
    }
}

TEST_F(PortDiscovery, IndexOutsideTheListIsIgnored)
{
    for (const uint32_t index : {10u, 11u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        AddDriver(BuiltInDrivers, L"A", index, L"Name");
        EXPECT_EQ(PortLabels(), Plain) << index;
    }
}

TEST_F(PortDiscovery, BrokenDriversAreSkippedAndTheScanGoesOn)
{
    AddDriver(BuiltInDrivers, L"A", 1, L"Name");
    HeadlessRegistrySetText(HKEY_LOCAL_MACHINE, L"Drivers\\BuiltIn\\A", L"Index", L"1"); // a text
    AddDriver(BuiltInDrivers, L"B", 2, L"Name");
    HeadlessRegistrySetBytes(HKEY_LOCAL_MACHINE, L"Drivers\\BuiltIn\\B", L"Index", REG_DWORD, "\x02");
    AddDriver(BuiltInDrivers, L"C", 3, L"Name");
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, L"Drivers\\BuiltIn\\C", L"Prefix", 0x4D4F43);
    HeadlessRegistryCreateKey(HKEY_LOCAL_MACHINE, L"Drivers\\BuiltIn\\D");
    AddDriver(BuiltInDrivers, L"E", 5, L"Good");
    EXPECT_EQ(PortLabels(), With(5, L"COM5: Good"));
}

TEST_F(PortDiscovery, KeyThatCannotBeOpenedIsSkipped)
{
    AddDriver(BuiltInDrivers, L"A", 1, L"First");
    AddDriver(BuiltInDrivers, L"B", 2, L"Second");
    HeadlessFailCall("RegOpenKeyExW", 3, ERROR_ACCESS_DENIED); // after both driver keys: that of A
    EXPECT_EQ(PortLabels(), With(2, L"COM2: Second"));
}

TEST_F(PortDiscovery, UnterminatedTextsAreReadToTheirEnd)
{
    AddDriver(BuiltInDrivers, L"A", 6, nullptr);
    HeadlessRegistrySetBytes(HKEY_LOCAL_MACHINE, L"Drivers\\BuiltIn\\A", L"Prefix", REG_SZ,
                             std::string("C\0O\0M\0", 6));
    HeadlessRegistrySetBytes(HKEY_LOCAL_MACHINE, L"Drivers\\BuiltIn\\A", L"FriendlyName", REG_SZ,
                             std::string("x\0y\0z", 5)); // an odd number of bytes
    EXPECT_EQ(PortLabels(), With(6, L"COM6: xy"));
}

TEST_F(PortDiscovery, IrCommDriverIsRemembered)
{
    AddDriver(BuiltInDrivers, L"ircomm", 2, L"Lower case");
    PortLabels();
    EXPECT_EQ(IrCommPortNumber, -1);
    AddDriver(BuiltInDrivers, L"IrCOMM", 4, L"Infrared"); // keys compare without case: the same key
    AddDriver(RegisteredDrivers, L"IrCOMM", 4, L"Infrared");
    PortLabels();
    EXPECT_EQ(IrCommPortNumber, 4);
    EXPECT_EQ(IrPortNumber.load(), -1); // that is another port
}

TEST_F(PortDiscovery, KeypadListIsLabelledTheSame)
{
    HeadlessSetPlatformType(L"SmartPhone");
    ChooseLayout();
    AddDriver(BuiltInDrivers, L"A", 5, L"Serial Cable");
    SetPort(L"Comm\\IrDA", 3);
    Labels labels = With(5, L"COM5: Serial Cable");
    labels[3] = L"COM3: Raw IR";
    EXPECT_EQ(PortLabels(), labels);
}

// ---- Infrared -----------------------------------------------------------------------------------------

struct InfraredCase {
    const char* name;
    const wchar_t *portKey, *bindKey;
};

class InfraredPort : public PortDiscovery, public testing::WithParamInterface<InfraredCase>
{
};

TEST_P(InfraredPort, IsFoundAndLabelled)
{
    HeadlessRegistryCreateKey(HKEY_LOCAL_MACHINE, L"Comm\\IrDA");
    SetPort(GetParam().portKey, 3);
    if (GetParam().bindKey) Bind(GetParam().bindKey, std::wstring_view(L"IrDriver\0Other\0", 16));
    EXPECT_EQ(PortLabels(), With(3, L"COM3: Raw IR"));
    EXPECT_EQ(IrPortNumber.load(), 3);
}

INSTANTIATE_TEST_SUITE_P(
    Places, InfraredPort,
    testing::Values(InfraredCase{"Stated", L"Comm\\IrDA", nullptr},
                    InfraredCase{"InParms", L"Comm\\IrDA\\parms", nullptr},
                    InfraredCase{"OfTheBoundDriver", L"Comm\\IrDriver", L"Comm\\IrDA\\linkage"},
                    InfraredCase{"InTheBoundDriversParms", L"Comm\\IrDriver\\parms", L"Comm\\IrDA\\linkage"}),
    [](const testing::TestParamInfo<InfraredCase>& place) { return place.param.name; });

TEST_F(PortDiscovery, DriversNameIsKeptForTheInfraredPort)
{
    AddDriver(BuiltInDrivers, L"A", 3, L"Infrared");
    SetPort(L"Comm\\IrDA", 3);
    EXPECT_EQ(PortLabels(), With(3, L"COM3: Infrared"));
    EXPECT_EQ(IrPortNumber.load(), 3); // opening it switches to infrared mode all the same
}

TEST_F(PortDiscovery, InfraredPortOutsideTheListIsIgnored)
{
    for (const uint32_t port : {10u, 0x80000000u, 0xFFFFFFFFu}) {
        SetPort(L"Comm\\IrDA", port);
        SetPort(L"Comm\\IrDA\\parms", 4); // not looked at: the number was stated
        EXPECT_EQ(PortLabels(), Plain);
        EXPECT_EQ(IrPortNumber.load(), -1);
    }
}

TEST_F(PortDiscovery, BrokenInfraredNumberCountsAsAbsent)
{
    HeadlessRegistrySetText(HKEY_LOCAL_MACHINE, L"Comm\\IrDA", L"Port", L"3");
    EXPECT_EQ(PortLabels(), Plain);
    SetPort(L"Comm\\IrDA\\parms", 4);
    EXPECT_EQ(PortLabels(), With(4, L"COM4: Raw IR"));
}

TEST_F(PortDiscovery, BindingInACircleEnds)
{
    HeadlessRegistryCreateKey(HKEY_LOCAL_MACHINE, L"Comm\\IrDA\\parms");
    Bind(L"Comm\\IrDA\\linkage", std::wstring_view(L"IrDA\0", 6));
    EXPECT_EQ(PortLabels(), Plain);
    Bind(L"Comm\\IrDA\\linkage", std::wstring_view(L"A\0", 3));
    Bind(L"Comm\\A\\linkage", std::wstring_view(L"IrDA\0", 6));
    EXPECT_EQ(PortLabels(), Plain);
    EXPECT_EQ(IrPortNumber.load(), -1);
}

TEST_F(PortDiscovery, BrokenBindingsFindNothing)
{
    SetPort(L"Comm\\IrDriver", 3);
    HeadlessRegistryCreateKey(HKEY_LOCAL_MACHINE, L"Comm\\IrDA\\linkage");
    EXPECT_EQ(PortLabels(), Plain); // no binding
    Bind(L"Comm\\IrDA\\linkage", L"");
    EXPECT_EQ(PortLabels(), Plain);
    Bind(L"Comm\\IrDA\\linkage", L"Missing");
    EXPECT_EQ(PortLabels(), Plain);
    Bind(L"Comm\\IrDA\\linkage", std::wstring(300, L'x')); // too long
    EXPECT_EQ(PortLabels(), Plain);
    HeadlessRegistrySetDword(HKEY_LOCAL_MACHINE, L"Comm\\IrDA\\linkage", L"Bind", 5);
    EXPECT_EQ(PortLabels(), Plain);
    Bind(L"Comm\\IrDA\\linkage", L"IrDriver"); // without its terminators
    EXPECT_EQ(PortLabels(), With(3, L"COM3: Raw IR"));
}

TEST_F(PortDiscovery, LengthOfTheFoundNameIsReturned)
{
    SetPort(L"Comm\\IrDA", 0);
    wchar_t name[PortNameCapacity] = L"";
    EXPECT_EQ(FindIrdaPort(L"IrDA", name), 5u);
    EXPECT_EQ(std::wstring(name), L"COM0:");
    wchar_t none[PortNameCapacity] = L"";
    EXPECT_EQ(FindIrdaPort(L"Other", none), 0u);
    EXPECT_EQ(FindIrdaPort(std::wstring(400, L'x').c_str(), none), 0u);
}

TEST_F(PortDiscovery, BindingsAreFollowedSevenDeep)
{
    // IrDA is bound to D1, this to D2, and so on.
    constexpr int Deepest = 8;
    std::wstring key = L"IrDA";
    for (int depth = 1; depth <= Deepest; ++depth) {
        const std::wstring next = L"D" + std::to_wstring(depth);
        Bind((L"Comm\\" + key + L"\\linkage").c_str(), next + L'\0');
        key = next;
    }
    SetPort(L"Comm\\D8", 6);
    EXPECT_EQ(PortLabels(), Plain);
    SetPort(L"Comm\\D7", 5);
    EXPECT_EQ(PortLabels(), With(5, L"COM5: Raw IR"));
}

} // namespace
