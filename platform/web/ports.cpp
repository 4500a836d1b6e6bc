// SPDX-License-Identifier: MIT
// Serial ports: those that the page opens for the program, and simulated devices in the page itself.
#include "platform/web/web.h"

#include <algorithm>
#include <map>

#include "messages.h"

namespace web
{

using namespace memory;

namespace
{

constexpr DWORD GeneralFailure = 31;
constexpr size_t MostReceived = 1 << 20;       // most bytes that are kept until they are read
constexpr uint64_t LongestAnswer = 10'000'000; // of the page, microseconds

struct Port {
    std::shared_ptr<Device> device; // null: the page's
    bool open = false, lost = false, answered = false;
    DWORD error = 0;                          // of the answer
    DWORD rate = OrdinaryLine().dcb.BaudRate; // the port's last rate
    std::string received;                     // from `taken` on
    size_t taken = 0;
};
std::map<uint32_t, Port> Ports;

// True after the page has answered the request.
bool AwaitPage(Port& port)
{
    const uint64_t end = Now() + LongestAnswer;
    while (!port.answered && Now() < end) Wait(end, WakePort, {"the page's port"});
    return port.answered ? port.error == 0 || Fail(port.error) : Fail(GeneralFailure);
}

struct PortObject : Line {
    uint32_t number;
    LineState line = OrdinaryLine();
    bool foundNothing = false; // at the last read
    bool closed = false;

    explicit PortObject(uint32_t portNumber) : number(portNumber) {}

    Port& Mine() { return Ports[number]; }
    LineState& State() override { return line; }
    void Escape(DWORD) override {}

    bool SetState(const DCB& dcb) override
    {
        Port& port = Mine();
        const bool other = dcb.BaudRate != line.dcb.BaudRate;
        if (port.lost) return Fail(GeneralFailure);
        line.dcb = dcb;
        port.rate = dcb.BaudRate;
        if (port.device || !other) return true;
        port.answered = false;
        ToPagePortRate(static_cast<int32_t>(number), static_cast<int32_t>(dcb.BaudRate));
        return AwaitPage(port);
    }

    // A read without data returns at once. The next one waits until there may be data, so that a silent line
    // wakes no thread.
    bool Read(void* buffer, DWORD count, DWORD& read) override
    {
        if (foundNothing) AwaitBytes();
        if (closed) return Fail(ERROR_INVALID_HANDLE);
        const bool success = Take(buffer, count, read);
        foundNothing = success && read == 0;
        return success;
    }

    void AwaitBytes()
    {
        Port& port = Mine();
        if (port.device) {
            const uint64_t due = port.device->NextBytes();
            if (due > Now()) Wait(due, WakePort, {"a device's bytes"});
        } else {
            while (!closed && !port.lost && port.received.empty())
                Wait(Never, WakePort, {"the page's bytes"});
        }
    }

    bool Take(void* buffer, DWORD count, DWORD& read)
    {
        Port& port = Mine();
        if (port.device) {
            const std::string bytes = port.device->Read(count, line.dcb.BaudRate);
            read = static_cast<DWORD>(bytes.copy(static_cast<char*>(buffer), count));
            return true;
        }
        if (port.lost && port.received.empty()) return Fail(GeneralFailure);
        read = static_cast<DWORD>(port.received.copy(static_cast<char*>(buffer), count, port.taken));
        port.taken += read;
        if (port.taken == port.received.size()) {
            port.received.clear();
            port.taken = 0;
        }
        return true;
    }

    bool Write(const void* buffer, DWORD count, DWORD& written) override
    {
        Port& port = Mine();
        const std::string_view bytes(static_cast<const char*>(buffer), count);
        if (port.lost) return Fail(GeneralFailure);
        if (port.device)
            port.device->Write(bytes, line.dcb.BaudRate);
        else
            ToPagePortWrite(static_cast<int32_t>(number), bytes);
        written = count;
        return true;
    }

    void Close() override
    {
        Port& port = Mine();
        closed = true;
        port.open = false;
        port.received.clear();
        port.taken = 0;
        if (!port.device) ToPagePortClose(static_cast<int32_t>(number));
        WakeAll(WakePort);
    }
};

// The port's entry in the list of drivers, from which the program gets the names of ports.
void NamePort(uint32_t number, const std::wstring& name)
{
    const std::wstring path = L"Drivers\\BuiltIn\\Port" + std::to_wstring(number);
    const auto bytes = [](const std::wstring& text) {
        return std::string(reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(wchar_t));
    };
    SetValue(HKEY_LOCAL_MACHINE, path.c_str(), L"Prefix", {REG_SZ, bytes(L"COM")});
    SetValue(HKEY_LOCAL_MACHINE, path.c_str(), L"Index",
             {REG_DWORD, std::string(reinterpret_cast<const char*>(&number), sizeof number)});
    SetValue(HKEY_LOCAL_MACHINE, path.c_str(), L"FriendlyName", {REG_SZ, bytes(name)});
}

void UnnamePort(uint32_t number)
{
    const std::wstring path = L"Drivers\\BuiltIn\\Port" + std::to_wstring(number);
    SetValue(HKEY_LOCAL_MACHINE, path.c_str(), L"Prefix", {REG_SZ, {}});
}

} // namespace

void AddDevice(uint32_t number, const std::wstring& name, std::shared_ptr<Device> device)
{
    Ports[number].device = std::move(device);
    NamePort(number, name);
}

bool HasPort(uint32_t number)
{
    return Ports.contains(number);
}

void OnPorts(const std::vector<int32_t>& numbers, const std::vector<std::wstring>& labels)
{
    std::erase_if(Ports, [&](const auto& entry) {
        const bool gone =
            !entry.second.device && !entry.second.open &&
            std::find(numbers.begin(), numbers.end(), static_cast<int32_t>(entry.first)) == numbers.end();
        if (gone) UnnamePort(entry.first);
        return gone;
    });
    for (size_t i = 0; i < std::min(numbers.size(), labels.size()); ++i) {
        const auto number = static_cast<uint32_t>(numbers[i]);
        if (Ports[number].device) continue;
        NamePort(number, labels[i]);
    }
}

void OnPortResult(int32_t number, int32_t error)
{
    const auto found = Ports.find(static_cast<uint32_t>(number));
    if (found == Ports.end()) return;
    found->second.answered = true;
    found->second.error = static_cast<DWORD>(error);
    WakeAll(WakePort);
}

void OnBytes(int32_t number, std::string_view bytes)
{
    const auto found = Ports.find(static_cast<uint32_t>(number));
    if (found == Ports.end() || !found->second.open) return;
    std::string& received = found->second.received;
    received += bytes.substr(0, MostReceived - std::min(MostReceived, received.size()));
    WakeAll(WakePort);
}

void OnPortLost(int32_t number)
{
    const auto found = Ports.find(static_cast<uint32_t>(number));
    if (found == Ports.end()) return;
    found->second.lost = true;
    found->second.answered = true;
    found->second.error = GeneralFailure;
    WakeAll(WakePort);
}

} // namespace web

namespace memory
{

using namespace web;

HANDLE OpenPort(uint32_t number)
{
    const auto found = Ports.find(number);
    if (found == Ports.end()) return Fail(ERROR_FILE_NOT_FOUND), INVALID_HANDLE_VALUE;
    Port& port = found->second;
    if (port.open) return Fail(ERROR_ACCESS_DENIED), INVALID_HANDLE_VALUE;
    const auto object = std::make_shared<PortObject>(number);
    object->line.dcb.BaudRate = port.rate;
    port.open = true;
    port.lost = port.answered = false;
    if (port.device) {
        port.device->Open();
    } else {
        ToPagePortOpen(static_cast<int32_t>(number), static_cast<int32_t>(port.rate));
        if (!AwaitPage(port)) {
            port.open = false;
            return INVALID_HANDLE_VALUE;
        }
    }
    return NewHandle(object);
}

} // namespace memory
