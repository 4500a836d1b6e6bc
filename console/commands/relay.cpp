// SPDX-License-Identifier: MIT
#include <deque>
#include <list>

#include "console/commands/commands.h"
#include "console/correction_options.h"
#include "console/finder.h"
#include "console/mend_dates.h"
#include "console/pseudo_terminal.h"

namespace console
{

namespace
{

struct Arguments {
    std::string link, tcpPort;
    bool writes = false;
    CorrectionOptions correction;
};

using asio::ip::tcp;

// A reader may be late by this number of bytes: five seconds at 115200 baud.
constexpr size_t MostWaiting = 65536;

using Received = std::function<void(std::span<const uint8_t>)>;

// A reader on the network. A reader that is too slow is disconnected.
class TcpReader : public std::enable_shared_from_this<TcpReader>
{
public:
    TcpReader(tcp::socket socket, Received received)
        : socket_(std::move(socket)), received_(std::move(received))
    {
    }

    void Start() { Read(); }

    void Write(const std::string& text)
    {
        if (text.empty() || closed_) return;
        if (waiting_.size() + text.size() > MostWaiting) {
            Close();
            return;
        }
        waiting_ += text;
        if (sending_.empty()) Send();
    }

    void Close()
    {
        asio::error_code ignored;
        socket_.close(ignored);
        closed_ = true;
    }

    bool IsClosed() const { return closed_; }

private:
    void Send()
    {
        sending_ = std::exchange(waiting_, {});
        asio::async_write(socket_, asio::buffer(sending_),
                          [self = shared_from_this()](const asio::error_code& error, size_t) {
                              self->sending_.clear();
                              if (error)
                                  self->Close();
                              else if (!self->waiting_.empty())
                                  self->Send();
                          });
    }

    void Read()
    {
        socket_.async_read_some(asio::buffer(buffer_),
                                [self = shared_from_this()](const asio::error_code& error, size_t count) {
                                    if (error) {
                                        self->Close();
                                        return;
                                    }
                                    self->received_({self->buffer_, count});
                                    self->Read();
                                });
    }

    tcp::socket socket_;
    Received received_;
    std::string sending_, waiting_;
    uint8_t buffer_[1024];
    bool closed_ = false;
};

// Accepts connections from this computer only, for a limited number of readers.
class TcpServer
{
public:
    TcpServer(asio::io_context& context, uint16_t port, Received received)
        : acceptor_(context), rest_(context), received_(std::move(received))
    {
        const tcp::endpoint place(asio::ip::address_v4::loopback(), port);
        asio::error_code error;
        acceptor_.open(place.protocol(), error);
        if (!error) error = ReserveAddress(acceptor_);
        if (!error) acceptor_.bind(place, error);
        if (!error) acceptor_.listen(asio::socket_base::max_listen_connections, error);
        if (error) Fail(FailureKind::Failed, "--tcp " + std::to_string(port) + ": " + error.message());
        Accept();
    }

    ~TcpServer()
    {
        for (const auto& reader : readers_) reader->Close();
    }

    TcpServer(const TcpServer&) = delete;

    void Write(const std::string& text)
    {
        for (const auto& reader : readers_) reader->Write(text);
        readers_.remove_if([](const auto& reader) { return reader->IsClosed(); });
    }

private:
    static constexpr size_t MostReaders = 64;

    void Accept()
    {
        acceptor_.async_accept([this](const asio::error_code& error, tcp::socket socket) {
            if (error == asio::error::operation_aborted) return;
            if (error) { // no descriptor left, for example: the next attempt would fail at once
                rest_.expires_after(std::chrono::seconds(1));
                rest_.async_wait([this](const asio::error_code& cancelled) {
                    if (!cancelled) Accept();
                });
                return;
            }
            readers_.remove_if([](const auto& reader) { return reader->IsClosed(); });
            if (readers_.size() < MostReaders) {
                readers_.push_back(std::make_shared<TcpReader>(std::move(socket), received_));
                readers_.back()->Start();
            }
            Accept();
        });
    }

    tcp::acceptor acceptor_;
    asio::steady_timer rest_;
    Received received_;
    std::list<std::shared_ptr<TcpReader>> readers_;
};

void RelayStream(Context& context, const Arguments& arguments)
{
    if (arguments.link.empty() && arguments.tcpPort.empty())
        Fail(FailureKind::Usage, "relay needs a target: --pty LINK, --tcp PORT or both");
    uint16_t tcpPort = 0;
    if (!arguments.tcpPort.empty())
        tcpPort = static_cast<uint16_t>(ParseWhole(arguments.tcpPort, 1, 65535, "--tcp"));
    arguments.correction.ReferenceOrClock(); // a wrong option is noticed before a port is opened
    if (context.options.dryRun) return;      // it sends nothing on its own
    const Receiver receiver = FindReceiver(context);
    Session& session = *receiver.session;
    if (arguments.correction.wanted && receiver.found.protocol == Protocol::Sirf)
        context.output.Note(
            "--correct-dates mends only dates of NMEA sentences, and the receiver speaks SiRF "
            "binary: \"toravanectl switch nmea\" changes it");

    std::vector<uint8_t> fromReaders;
    const Received received = [&](std::span<const uint8_t> bytes) {
        if (arguments.writes && fromReaders.size() + bytes.size() <= MostWaiting)
            fromReaders.insert(fromReaders.end(), bytes.begin(), bytes.end());
    };
    std::unique_ptr<PseudoTerminal> terminal;
    if (!arguments.link.empty())
        terminal = MakePseudoTerminal(session.Loop().Context(), arguments.link, received);
    std::optional<TcpServer> server;
    if (tcpPort != 0) server.emplace(session.Loop().Context(), tcpPort, received);

    CorrectionNotes notes(context.output);
    DateMender mender([&](const Date& date) {
        const Correction correction =
            CorrectDate(date, arguments.correction.ReferenceOrClock(), ReleaseDate());
        notes.Take(correction);
        return correction.corrected;
    });
    Listener listener;
    listener.bytes = [&](std::span<const uint8_t> bytes) {
        const std::string text = arguments.correction.wanted
                                     ? mender.Feed(bytes)
                                     : std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        if (terminal) terminal->Write(text);
        if (server) server->Write(text);
    };
    context.output.Note("relaying " + session.Port() + " at " + std::to_string(session.Rate()) + " baud" +
                        (terminal ? " to " + arguments.link : "") +
                        (server ? " to 127.0.0.1:" + arguments.tcpPort : ""));
    for (;;) {
        session.WaitFor([&] { return !fromReaders.empty(); }, std::chrono::hours(1));
        if (!fromReaders.empty()) session.SendRaw(std::exchange(fromReaders, {}));
    }
}

} // namespace

Action DefineRelay(Parser& parser)
{
    const auto arguments = std::make_shared<Arguments>();
    parser.Option("--pty", arguments->link, "a pseudo-terminal behind this symbolic link, removed at the end")
        .TypeName("LINK");
    parser.Option("--tcp", arguments->tcpPort, "port of this computer alone, 127.0.0.1, for several readers")
        .TypeName("PORT");
    parser.Flag("--write", arguments->writes, "send to the receiver what the readers write");
    arguments->correction.Define(parser, "the computer's clock");
    return [arguments](Context& context) { RelayStream(context, *arguments); };
}

} // namespace console
