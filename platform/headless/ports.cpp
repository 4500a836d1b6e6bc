// SPDX-License-Identifier: MIT
// Serial ports with a scripted device at the other end.
//
// The device has one line: queued pieces are sent over it one after the other, each byte at its time, and a
// stream repeats itself between the pieces. A byte that arrives while the port is open enters the driver's
// queue, as noise if the port's rate is not the device's rate. While the port is closed it is lost; but
// pieces that are queued on a closed port wait until the port is opened.
#include "platform/headless/internal.h"

#include <algorithm>

using namespace memory;

namespace
{

constexpr size_t StreamQueueBytes = 1 << 20; // limit for the bytes of a stream that nobody reads

struct Piece {
    std::string bytes;
    uint64_t start; // microseconds
    uint32_t byteTime;
    bool awaitsOpening = false; // `start` counts from the port's next opening
};

struct Port : HeadlessPort {
    std::deque<Piece> queue;
    Piece stream{};
    Piece current{}; // being sent now, from its byte `sentBytes` on
    size_t sentBytes = 0;
    uint64_t lineFree = 0;
    std::string received; // the driver's queue from `taken` on
    size_t taken = 0;
    uint32_t noise = 0;
};

std::map<uint32_t, std::unique_ptr<Port>> Ports;

// Never the first byte of a sentence or of a frame.
char NoiseByte(Port& port)
{
    port.noise = port.noise * 1664525 + 1013904223;
    const uint8_t byte = static_cast<uint8_t>(port.noise >> 24);
    return static_cast<char>(byte == '$' || byte == 0xA0 ? 0xFF : byte);
}

// Times at which the next queued piece can start, and at which the stream can start again.
uint64_t QueueTime(const Port& port)
{
    if (port.queue.empty() || port.queue.front().awaitsOpening) return Never;
    return std::max(port.queue.front().start, port.lineFree);
}

uint64_t StreamTime(const Port& port)
{
    return port.stream.bytes.empty() ? Never : std::max(port.stream.start, port.lineFree);
}

// Starts to send the next piece if its time has come.
bool StartPiece(Port& port)
{
    const uint64_t queued = QueueTime(port), streamed = StreamTime(port);
    if (std::min(queued, streamed) > Now()) return false; // Never too
    port.sentBytes = 0;
    if (queued <= streamed) {
        port.current = std::move(port.queue.front());
        port.queue.pop_front();
        port.current.start = queued;
        return true;
    }
    const uint64_t streamTime = port.stream.bytes.size() * uint64_t{port.stream.byteTime};
    port.current = port.stream;
    port.current.start = streamed;
    if (!port.isOpen) port.current.start += (std::min(Now(), queued) - streamed) / streamTime * streamTime;
    return true;
}

// Lets all bytes arrive that have been sent until now.
void Arrive(Port& port)
{
    while (port.sentBytes < port.current.bytes.size() || StartPiece(port)) {
        const Piece& piece = port.current;
        size_t arrived = piece.bytes.size();
        if (piece.byteTime != 0)
            arrived =
                static_cast<size_t>(std::min<uint64_t>(arrived, (Now() - piece.start) / piece.byteTime + 1));
        if (arrived > port.sentBytes) {
            std::string bytes = piece.bytes.substr(port.sentBytes, arrived - port.sentBytes);
            if (port.deviceRate != 0 && port.deviceRate != port.dcb.BaudRate)
                for (char& byte : bytes) byte = NoiseByte(port);
            const bool full = piece.byteTime != 0 && port.received.size() - port.taken >= StreamQueueBytes;
            if (port.isOpen && !full) port.received += bytes;
            port.sentBytes = arrived;
        }
        if (arrived < piece.bytes.size()) break;
        port.lineFree = piece.start + uint64_t{piece.byteTime} * piece.bytes.size();
    }
}

// Time of the next byte; Never if no byte is being sent.
uint64_t NextArrival(const Port& port)
{
    if (port.sentBytes < port.current.bytes.size())
        return port.current.start + uint64_t{port.current.byteTime} * port.sentBytes;
    return std::min(QueueTime(port), StreamTime(port));
}

struct PortObject : Line {
    Port* port = nullptr;

    LineState& State() override { return *port; }

    bool SetState(const DCB& dcb) override
    {
        Arrive(*port); // bytes sent until now have the old rate
        port->dcb = dcb;
        port->rates.push_back(dcb.BaudRate);
        return true;
    }

    void Escape(DWORD function) override { port->escapes.push_back(function); }

    bool Read(void* buffer, DWORD count, DWORD& read) override;

    bool Write(const void* buffer, DWORD count, DWORD& written) override
    {
        const size_t accepted =
            port->acceptBytes < 0 ? count : std::min<size_t>(count, static_cast<size_t>(port->acceptBytes));
        const std::string bytes(static_cast<const char*>(buffer), accepted);
        port->sent += bytes;
        port->writes.push_back(bytes);
        written = static_cast<DWORD>(accepted);
        Arrive(*port); // before the device may change its rate
        if (const auto onWrite = port->onWrite) onWrite(*port, bytes);
        return true;
    }

    void Close() override
    {
        Arrive(*port);
        port->received.clear();
        port->taken = 0;
        port->isOpen = false;
        ++port->closes;
        WakeAll(WakePort); // ends the reads that still wait
    }
};

bool PortObject::Read(void* buffer, DWORD count, DWORD& read)
{
    Port& line = *port;
    const COMMTIMEOUTS& timeouts = line.timeouts;
    const bool atOnce = timeouts.ReadIntervalTimeout == INFINITE &&
                        timeouts.ReadTotalTimeoutMultiplier == 0 && timeouts.ReadTotalTimeoutConstant == 0;
    const uint64_t total =
        uint64_t{timeouts.ReadTotalTimeoutMultiplier} * count + timeouts.ReadTotalTimeoutConstant;
    const uint64_t end = total == 0 ? Never : Now() + total * 1000;
    const uint32_t openedAs = line.opens;
    for (;;) {
        if (line.received.size() - line.taken < count) Arrive(line);
        if (atOnce || line.taken < line.received.size() || count == 0 || Now() >= end) break;
        Wait(std::min(end, NextArrival(line)), WakePort, {"a byte of the port", line.number});
        if (!line.isOpen || line.opens != openedAs) return Fail(ERROR_INVALID_HANDLE);
    }
    read = static_cast<DWORD>(std::min<size_t>(count, line.received.size() - line.taken));
    std::copy_n(line.received.data() + line.taken, read, static_cast<char*>(buffer));
    line.taken += read;
    if (line.taken == line.received.size()) {
        line.received.clear();
        line.taken = 0;
    }
    return true;
}

} // namespace

namespace memory
{

HANDLE OpenPort(uint32_t number)
{
    const auto found = Ports.find(number);
    if (found == Ports.end()) return Fail(ERROR_FILE_NOT_FOUND), INVALID_HANDLE_VALUE;
    Port& port = *found->second;
    if (port.isOpen) return Fail(ERROR_ACCESS_DENIED), INVALID_HANDLE_VALUE;
    Arrive(port);
    for (Piece& piece : port.queue) {
        if (piece.awaitsOpening) piece.start += Now();
        piece.awaitsOpening = false;
    }
    port.isOpen = true;
    ++port.opens;
    auto object = std::make_shared<PortObject>();
    object->port = &port;
    return NewHandle(object);
}

} // namespace memory

namespace headless
{

void ResetPorts()
{
    Ports.clear();
}

} // namespace headless

HeadlessPort& HeadlessAddPort(uint32_t number)
{
    if (number > 255) Stop("a port number above 255");
    auto& port = Ports[number];
    port = std::make_unique<Port>();
    port->number = number;
    port->noise = number + 1;
    static_cast<LineState&>(*port) = OrdinaryLine();
    return *port;
}

HeadlessPort& HeadlessGetPort(uint32_t number)
{
    const auto found = Ports.find(number);
    if (found == Ports.end()) Stop("port " + std::to_string(number) + " was not added");
    return *found->second;
}

void HeadlessReceive(HeadlessPort& port, std::string_view bytes, uint32_t byteMicroseconds)
{
    HeadlessReceiveAfter(port, 0, bytes, byteMicroseconds);
}

void HeadlessReceiveAfter(HeadlessPort& port, uint32_t afterMilliseconds, std::string_view bytes,
                          uint32_t byteMicroseconds)
{
    Port& line = static_cast<Port&>(port);
    Arrive(line);
    const uint64_t delay = uint64_t{afterMilliseconds} * 1000;
    line.queue.push_back(
        {std::string(bytes), line.isOpen ? Now() + delay : delay, byteMicroseconds, !line.isOpen});
    WakeAll(WakePort);
}

void HeadlessStream(HeadlessPort& port, std::string_view bytes, uint32_t byteMicroseconds)
{
    Port& line = static_cast<Port&>(port);
    if (byteMicroseconds == 0 && !bytes.empty()) Stop("a stream whose bytes take no time never ends");
    Arrive(line);
    line.stream = {std::string(bytes), Now(), byteMicroseconds, false};
    WakeAll(WakePort);
}
