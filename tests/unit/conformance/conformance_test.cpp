// SPDX-License-Identifier: MIT
// The product's reception and commands against the software receiver, in fast motion.

#include <optional>

#include "graph/recorder.h"
#include "link/link_state.h"
#include "nmea/command_encoder.h"
#include "receiver/session.h"
#include "sirf/command_layouts.h"
#include "sirf/frame_sender.h"
#include "sirf/switch_to_nmea_command.h"
#include "tests/unit/support/product_test.h"

namespace
{

class Conformance : public ProductTest
{
protected:
    Conformance() : Port(OpenPort()) {}

    void Start(receiver::Protocol protocol, uint32_t rate)
    {
        receiver::Config config;
        config.protocol = protocol;
        config.lineRate = rate;
        config.firstStart = receiver::Restart::Hot;
        Session.emplace(config, std::vector<receiver::Action>{}, std::nullopt);
        HostRate = rate;
    }

    // Lets time pass: passes bytes between the product and the receiver.
    void Pass(double seconds)
    {
        constexpr double StepSeconds = 0.02;
        for (const double end = Now + seconds; Now < end; Now += StepSeconds) {
            const receiver::Bytes fromHost(Port.sent.begin(), Port.sent.end());
            Port.sent.clear();
            for (const uint8_t b : Session->Step(Now, fromHost, HostRate)) {
                const char character = static_cast<char>(b);
                if (b == '\n') ++LineEnds;
                Feed({&character, 1});
            }
            Sleep(20);
        }
    }

    // Waits for a moment without bytes on the line.
    void Drain()
    {
        for (int i = 0; i < 1000 && !(Session->Sim.Output.empty() && Session->Wire.Idle()); ++i) Pass(0.02);
        ASSERT_TRUE(Session->Sim.Output.empty() && Session->Wire.Idle());
    }

    HeadlessPort& Port;
    std::optional<receiver::Session> Session;
    double Now = 0;
    uint32_t HostRate = 0, LineEnds = 0;
};

TEST_F(Conformance, AnHourOfNmeaWithoutADroppedSentence)
{
    Start(receiver::Protocol::Nmea, 9600);
    Pass(3600);
    Drain();
    EXPECT_GT(LineEnds, 3600u * 4);
    EXPECT_EQ(NmeaMessageCount.load(), LineEnds);
    EXPECT_GT(GraphSampleCount.load(), 3500u);
    EXPECT_EQ(ProtocolMode(), ProtocolNmea);
}

TEST_F(Conformance, AnHourOfSirfBinaryWithoutADroppedFrame)
{
    Start(receiver::Protocol::SirfBinary, 38400);
    Pass(3600);
    Drain();
    EXPECT_GT(SirfMessageCount.load(), 3600u * 5);
    EXPECT_EQ(SirfMessageCount.load(), Session->Sim.MessagesSent);
    EXPECT_GT(GraphSampleCount.load(), 3500u);
    EXPECT_EQ(ProtocolMode(), ProtocolSirf);
}

TEST_F(Conformance, BadLinesCostMessagesAndNothingElse)
{
    Start(receiver::Protocol::SirfBinary, 38400);
    for (const char* fault : {"lose 0.002", "flip 0.002", "burst 5000"}) {
        std::string error;
        const std::optional<receiver::Action> action = receiver::ParseAction(fault, error);
        ASSERT_TRUE(action) << error;
        Session->Perform(*action);
        const uint32_t before = SirfMessageCount.load();
        Pass(300);
        EXPECT_GT(SirfMessageCount.load(), before + 300) << fault;
    }
    EXPECT_LT(SirfMessageCount.load(), Session->Sim.MessagesSent);
}

TEST_F(Conformance, EveryNmeaCommandIsAccepted)
{
    Start(receiver::Protocol::Nmea, 9600);
    Pass(5); // with the hot start that the first sentence causes
    const uint64_t before = Session->Sim.CommandsAccepted;
    uint32_t sent = 0;
    for (const char* body : {"PSRF103,3,0,5,1", "PSRF105,1", "PSRF106,178", "PSRF101,0,0,0,0,0,0,12,2",
                             "PSRF101,-2686700,-4304200,3851624,96000,49742700,921,12,3"}) {
        NmeaSend(body);
        Pass(5);
        EXPECT_EQ(Session->Sim.CommandsAccepted, before + ++sent) << body;
    }
    EXPECT_EQ(Session->Sim.CommandsRefused, 0u);
}

// Every settings command with each field at the lowest value that the dialogs accept, and every poll.
TEST_F(Conformance, EverySirfCommandIsAcceptedAndReported)
{
    Start(receiver::Protocol::SirfBinary, 38400);
    Pass(5);
    const CommandLayout* const layouts[] = {&DgpsSourceLayout,
                                            &ModeControlLayout,
                                            &DopMaskLayout,
                                            &DgpsModeLayout,
                                            &ElevationMaskLayout,
                                            &PowerMaskLayout,
                                            &StaticNavigationLayout,
                                            &LowPowerLayout,
                                            &SbasLayout,
                                            &AdvancedPowerManagementLayout};
    for (const CommandLayout* layout : layouts) {
        uint8_t payload[MaxCommandLength] = {layout->command};
        for (const CommandField& field : layout->fields) {
            const int32_t low = field.kind == FieldKind::FivePercent ? field.low / 5
                                : field.kind == FieldKind::Tenths    ? 0
                                                                     : field.low;
            for (uint32_t i = 0; i < field.width; ++i)
                payload[field.offset + i] = static_cast<uint8_t>(low >> 8 * (field.width - 1 - i));
        }
        const uint64_t accepted = Session->Sim.CommandsAccepted;
        SirfSend(payload, layout->length);
        Pass(2);
        EXPECT_EQ(Session->Sim.CommandsAccepted, accepted + 1) << int{layout->command};
        if (!FindPolledCommand(layout->command)) continue;
        SendPollParameter(layout->command);
        Pass(2);
        EXPECT_EQ(Session->Sim.CommandsAccepted, accepted + 2) << int{layout->command};
    }
    const uint64_t accepted = Session->Sim.CommandsAccepted;
    SendPollSoftwareVersion();
    Pass(1);
    SendPollNavigationParameters();
    Pass(1);
    SendMessageRate(0, 41, 5);
    Pass(1);
    EXPECT_EQ(Session->Sim.CommandsAccepted, accepted + 3);
    EXPECT_EQ(Session->Sim.CommandsRefused, 0u);
}

TEST_F(Conformance, SwitchesToSirfBinaryAndBack)
{
    Start(receiver::Protocol::Nmea, 4800);
    Pass(5);
    NmeaSend("PSRF100,0,57600,8,1,0");
    Pass(2);
    ResetProtocolMode();
    HostRate = 57600;
    Pass(5);
    EXPECT_EQ(ProtocolMode(), ProtocolSirf);
    uint8_t seconds[NmeaRateCount];
    LoadNmeaRates(seconds);
    SendSwitchToNmea(DebugMessages::Unchanged, seconds, true, 4800);
    Pass(2);
    ResetProtocolMode();
    HostRate = 4800;
    Pass(5);
    EXPECT_EQ(ProtocolMode(), ProtocolNmea);
}

} // namespace
