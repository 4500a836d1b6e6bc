// SPDX-License-Identifier: MIT
#include "console/session.h"

#include <algorithm>
#include <memory>
#include <sstream>

#include "nmea/command_encoder.h"
#include "sirf/frame_sender.h"

namespace console
{

namespace
{

// Bytes are read in portions. At full rate that is fifty reads a second, even if the driver delivers only a
// few bytes at a time.
constexpr auto ReadRest = std::chrono::milliseconds(20);

// Failed reads in a row after which a port counts as vanished even if reading could go on.
constexpr int MostFailedReads = 10;

constexpr auto WriteLimit = std::chrono::seconds(3);

// Bytes of another program: lines of text, or hexadecimal bytes.
void PrintForeign(std::span<const uint8_t> bytes)
{
    const auto isText = [](uint8_t b) { return (b >= 0x20 && b <= 0x7E) || b == '\r' || b == '\n'; };
    if (!std::all_of(bytes.begin(), bytes.end(), isText)) {
        std::fprintf(stderr, "> %s\n", HexText(bytes).c_str());
        return;
    }
    std::istringstream lines(std::string(bytes.begin(), bytes.end()));
    for (std::string line; std::getline(lines, line);) {
        if (line.ends_with('\r')) line.pop_back();
        if (!line.empty()) std::fprintf(stderr, "> %s\n", line.c_str());
    }
}

void PrintTraffic(char direction, std::span<const uint8_t> frame)
{
    std::fprintf(stderr, "%c %s\n", direction, FrameText(frame).c_str());
}

} // namespace

Frame FrameNmea(std::string_view body)
{
    uint8_t sentence[MaxNmeaCommand];
    const uint32_t count = FrameNmeaCommand(body.data(), static_cast<uint8_t>(body.size()), sentence);
    return Frame(sentence, sentence + count);
}

Frame FrameSirf(std::span<const uint8_t> payload)
{
    uint8_t frame[MaxSirfCommand];
    const uint32_t count = FrameSirfCommand(payload.data(), static_cast<uint8_t>(payload.size()), frame);
    return Frame(frame, frame + count);
}

std::string ChoosePort(const Options& options)
{
    if (options.port) return *options.port;
    const std::vector<PortInfo> ports = ListPorts();
    if (ports.size() == 1) return ports[0].port;
    std::string message = "no serial port found: give one with --port";
    if (!ports.empty()) message = "several serial ports: choose one with --port:";
    for (const PortInfo& info : ports) message += ' ' + info.port;
    Fail(FailureKind::Usage, message);
}

Session::Session(Context& context, const std::string& port, uint32_t rate)
    : context_(context), port_(loop_.Context()), rest_(loop_.Context()), name_(port), rate_(rate)
{
    port_.assign(OpenPort(port, rate));
    if (context.options.verbose) {
        verbose_.sentence = [](const Sentence& sentence) {
            const std::string body = '$' + std::string(sentence.body);
            Frame frame(body.begin(), body.end());
            if (sentence.hadChecksum) frame = FrameNmea(sentence.body);
            PrintTraffic('<', frame);
        };
        verbose_.message = [](const Message& message) {
            const uint8_t length[] = {static_cast<uint8_t>(message.wire.size() >> 8),
                                      static_cast<uint8_t>(message.wire.size())};
            uint32_t sum = 0;
            for (const uint8_t b : message.wire) sum += b;
            Frame frame = {0xA0, 0xA2, length[0], length[1]};
            frame.insert(frame.end(), message.wire.begin(), message.wire.end());
            frame.insert(frame.end(),
                         {static_cast<uint8_t>(sum >> 8 & 0x7F), static_cast<uint8_t>(sum), 0xB0, 0xB3});
            PrintTraffic('<', frame);
        };
    }
    ForgetPartialMessage();
    Read();
}

Session::~Session()
{
    ReleasePort(port_.native_handle());
}

void Session::Read()
{
    port_.async_read_some(asio::buffer(buffer_),
                          [this](const asio::error_code& error, size_t count) { Received(error, count); });
}

Failure Session::PortFailure(const asio::error_code& error, const std::string& otherwise) const
{
    return {FailureKind::Failed,
            HasVanished(error) ? name_ + ": the device has vanished" : otherwise + error.message()};
}

void Session::Received(const asio::error_code& error, size_t count)
{
    if (error == asio::error::operation_aborted) return;
    failedReads_ = error ? failedReads_ + 1 : 0;
    if (error && (failedReads_ > MostFailedReads || !CanReadOn(port_.native_handle(), error))) {
        loop_.Stop(PortFailure(error, name_ + ": "));
        return;
    }
    bytesReceived_ += count;
    Feed({buffer_, count});
    if (count == sizeof buffer_) {
        Read();
        return;
    }
    rest_.expires_after(ReadRest);
    rest_.async_wait([this](const asio::error_code& cancelled) {
        if (!cancelled) Read();
    });
}

void Session::SetRate(uint32_t rate)
{
    if (const asio::error_code error = SetPortRate(port_.native_handle(), rate))
        throw PortFailure(error, "the rate " + std::to_string(rate) + " cannot be set: ");
    rate_ = rate;
    ForgetPartialMessage();
}

void Session::Send(const Frame& frame)
{
    if (context_.options.verbose) PrintTraffic('>', frame);
    Transmit(frame);
}

void Session::SendRaw(std::span<const uint8_t> bytes)
{
    if (context_.options.verbose) PrintForeign(bytes);
    Transmit(bytes);
}

void Session::Transmit(std::span<const uint8_t> bytes)
{
    struct Sending {
        Frame bytes;
        bool done = false;
        asio::error_code error;
    };
    // Also owned by the handler, because an interruption may end the wait before the write is finished.
    const auto sending = std::make_shared<Sending>();
    sending->bytes.assign(bytes.begin(), bytes.end());
    asio::async_write(port_, asio::buffer(sending->bytes), [sending](const asio::error_code& error, size_t) {
        sending->done = true;
        sending->error = error;
    });
    if (!loop_.WaitFor([&] { return sending->done; }, WriteLimit)) {
        asio::error_code ignored;
        port_.cancel(ignored);
        Fail(FailureKind::Failed, name_ + ": the port takes no bytes");
    }
    if (!sending->error) {
        // Drivers report bytes as written that are still waiting in an adapter. The rate must not change
        // before they are sent.
        constexpr double BitsPerByte = 10, Reserve = 0.05;
        loop_.WaitFor({}, Seconds(static_cast<double>(bytes.size()) * BitsPerByte / rate_ + Reserve));
        return;
    }
    throw PortFailure(sending->error, name_ + ": ");
}

} // namespace console
