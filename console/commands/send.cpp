// SPDX-License-Identifier: MIT
#include <cctype>

#include "console/commands/commands.h"
#include "console/finder.h"

namespace console
{

namespace
{

constexpr size_t LongestCommand = 255;

struct SendOptions {
    std::string body;
    std::vector<std::string> bytes;
};

std::string CheckBody(const std::string& body)
{
    if (body.empty() || body.size() > LongestCommand)
        Fail(FailureKind::Usage, "the body of a sentence has 1 to 255 characters");
    for (const char c : body)
        if (c < 0x20 || c > 0x7E || c == '$' || c == '*')
            Fail(FailureKind::Usage,
                 "the body of a sentence has printable characters alone, and neither $ nor *: "
                 "both are added, the checksum too");
    return body;
}

int DigitValue(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    const int letter = std::tolower(static_cast<unsigned char>(c));
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

// Bytes of two digits each, with or without spaces between them; a single digit is one byte.
Frame ParseBytes(const std::vector<std::string>& texts)
{
    Frame payload;
    for (std::string text : texts) {
        if (text.size() == 1) text.insert(0, 1, '0');
        for (size_t i = 0; i < text.size() || text.empty(); i += 2) {
            const int high = i + 1 < text.size() ? DigitValue(text[i]) : -1;
            const int low = i + 1 < text.size() ? DigitValue(text[i + 1]) : -1;
            if (high < 0 || low < 0) Fail(FailureKind::Usage, "\"" + text + "\" is no hexadecimal byte");
            payload.push_back(static_cast<uint8_t>(high << 4 | low));
        }
    }
    if (payload.size() > LongestCommand) Fail(FailureKind::Usage, "a command has at most 255 bytes");
    return payload;
}

// `id` is the message id that a refusal contains; a sentence has none.
void SendMessage(Context& context, Protocol protocol, int id, const std::function<Frame()>& makeFrame)
{
    constexpr uint8_t CommandRefused = 12;
    Output& output = context.output;
    if (context.options.dryRun) {
        output.Line("> " + FrameText(makeFrame()));
        return;
    }
    const Receiver receiver = FindReceiver(context);
    if (receiver.found.protocol != protocol)
        Fail(FailureKind::Protocol, std::string("the receiver speaks ") +
                                        ProtocolTitle(receiver.found.protocol) + ": \"toravanectl switch " +
                                        ProtocolKey(protocol) + "\" changes it");
    const Frame frame = makeFrame(); // wrapped if the receiver wraps its messages
    Json& answers = output.object["answers"] = Json::array();
    bool refused = false;
    Listener listener;
    const auto take = [&](const std::string& text) {
        output.Line(text);
        answers.push_back(text);
    };
    listener.sentence = [&](const Sentence& sentence) { take(Printable("$" + std::string(sentence.body))); };
    listener.message = [&](const Message& message) {
        take(FrameText(message.payload));
        refused |= message.Id() == CommandRefused && message.payload.size() >= 2 && message.payload[1] == id;
    };
    receiver.session->Send(frame);
    receiver.session->WaitFor({}, Seconds(context.options.timeoutSeconds));
    if (refused) Fail(FailureKind::Refused, "refused by the receiver");
}

} // namespace

Action DefineSend(Parser& parser)
{
    const auto options = std::make_shared<SendOptions>();
    Parser nmea = parser.Command("nmea", "send a sentence; $ and checksum are added");
    nmea.Option("BODY", options->body, "as PSRF105,1").Required();
    Parser sirf = parser.Command("sirf", "send a message; frame and checksum are added");
    sirf.Option("HEX", options->bytes, "the payload's bytes, as 84 00").Required();
    return [options, nmea](Context& context) {
        if (nmea.Given()) {
            const std::string body = CheckBody(options->body);
            SendMessage(context, Protocol::Nmea, -1, [&] { return FrameNmea(body); });
        } else {
            const Frame payload = ParseBytes(options->bytes);
            SendMessage(context, Protocol::Sirf, payload[0], [&] { return FrameSirf(payload); });
        }
    };
}

} // namespace console
