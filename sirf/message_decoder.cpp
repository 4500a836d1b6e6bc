// SPDX-License-Identifier: MIT
#include "sirf/message_decoder.h"
#include "settings/settings_store.h"

#include <algorithm>
#include <cmath>

#include "graph/channels.h"
#include "graph/latest_fix.h"
#include "graph/recorder.h"
#include "graph/repaint.h"
#include "link/link_state.h"
#include "link/protocol_recognition.h"
#include "resources/resource_ids.h"
#include "sirf/arrival_list.h"
#include "sirf/frame_sender.h"
#include "sirf/message_fields.h"
#include "sirf/page_lines.h"
#include "sirf/read_back.h"
#include "sky/angles.h"
#include "sky/sky_objects.h"
#include "ui/active_dialog.h"
#include "ui/error_boxes.h"
#include "ui/fix_lines.h"

uint8_t NavigationRecord[41];
uint8_t TrackingRecord[188];
uint8_t RefusalRecord[2];
uint8_t GeodeticRecord[91];
uint8_t InternalMessageText[1026];
uint8_t DevelopmentText[1025];

namespace
{

enum MessageId : uint8_t {
    MeasuredNavigation = 2,
    MeasuredTracking = 4,
    SoftwareVersion = 6,
    CommandRefused = 12,
    OkToSend = 18,
    NavigationParameters = 19,
    DgpsStatus = 27,
    DifferentialData = 29,
    GeodeticNavigation = 41,
    CommandParameters = 43,
    InternalMessage = 225,
    DevelopmentData = 255,
};

constexpr double PerDegree = 1e7; // message 41 counts in ten-millionths of a degree

void StoreFixTime(uint32_t hour, uint32_t minute, uint32_t second)
{
    FixTime.wHour = static_cast<uint16_t>(hour);
    FixTime.wMinute = static_cast<uint16_t>(minute);
    FixTime.wSecond = static_cast<uint16_t>(second);
}

// Fix type of a navigation message, 0 to 7.
FixMode ModeOfFixType(uint32_t fixType)
{
    if (fixType == 0) return FixMode::None;
    return fixType == 4 || fixType == 6 ? FixMode::ThreeD : FixMode::TwoD;
}

// ---- Message id 2: fix, and before the first message id 41 also time and position --------------------

constexpr MessageField<int32_t> EcefXMetres{1}, EcefYMetres{5}, EcefZMetres{9};
constexpr MessageField<uint8_t> Mode1{19}; // bits 0 to 2 fix type, bit 7 DGPS
constexpr MessageField<uint8_t> HdopFifths2{20};
constexpr MessageField<uint32_t> TimeOfWeekCs{24};
constexpr MessageField<uint8_t> SvsInFix{28};

constexpr MessageField<uint32_t> TimeOfWeekMs{7}; // of message id 41

void ShowTimes()
{
    ShowUtcLine(FixTime);
    ShowReceiverTime(ReadField(GeodeticRecord, TimeOfWeekMs) /
                     1000); // 0 until the first message id 41, on purpose
}

struct GeodeticPosition {
    double latitudeDegrees, longitudeDegrees, heightMetres; // above the ellipsoid
};

// WGS-84, by Bowring's closed formula.
GeodeticPosition PositionFromEcef(double x, double y, double z)
{
    constexpr double A = 6378137.0, B = 6356752.3142; // semi-axes, m
    constexpr double ASquared = 40680631590769.0, BSquared = 40408299984087.055;
    constexpr double FirstEccentricityA = 42697.67279723614;  // e^2 a
    constexpr double SecondEccentricityB = 42841.31160397719; // e'^2 b
    const double p = std::sqrt(x * x + y * y);
    const double theta = std::atan2(z * A, p * B);
    const double sinTheta = std::sin(theta), cosTheta = std::cos(theta);
    const double latitude = std::atan2(z + SecondEccentricityB * sinTheta * sinTheta * sinTheta,
                                       p - FirstEccentricityA * cosTheta * cosTheta * cosTheta);
    const double sinLatitude = std::sin(latitude), cosLatitude = std::cos(latitude);
    const double normal =
        ASquared / std::sqrt(ASquared * cosLatitude * cosLatitude + BSquared * sinLatitude * sinLatitude);
    return {latitude * DegreesPerRadian, std::atan2(y, x) * DegreesPerRadian, p / cosLatitude - normal};
}

void TakeEcefPosition()
{
    const uint32_t timeOfWeek = ReadField(NavigationRecord, TimeOfWeekCs); // GPS time: leap seconds stay in
    StoreFixTime(timeOfWeek / 360000 % 24, timeOfWeek / 6000 % 60, timeOfWeek / 100 % 60);
    ShowTimes();

    SetChannelValue(ChannelHdop, ReadField(NavigationRecord, HdopFifths2) * 0.2);
    ShowHdopLine(SirfLineHdop, GraphChannel[ChannelHdop].Value);

    const GeodeticPosition position =
        PositionFromEcef(ReadField(NavigationRecord, EcefXMetres), ReadField(NavigationRecord, EcefYMetres),
                         ReadField(NavigationRecord, EcefZMetres));
    // Neither UTC nor a height above mean sea level.
    BeginFixReport(ModeOfFixType(ReadField(NavigationRecord, Mode1) & 7u));
    LatestFix.LatitudeDegrees = position.latitudeDegrees;
    LatestFix.LongitudeDegrees = position.longitudeDegrees;
    LatestFix.AltitudeEllipsoidMetres = position.heightMetres;
    LatestFix.Hdop = GraphChannel[ChannelHdop].Value;
    LatestFix.SatellitesInFix = ReadField(NavigationRecord, SvsInFix);

    SetChannelValue(ChannelNorthing, position.latitudeDegrees * MetresPerDegree);
    SetChannelValue(ChannelEasting, std::cos(position.latitudeDegrees * RadiansPerDegree) *
                                        position.longitudeDegrees * MetresPerDegree);
    // Above the ellipsoid here, above mean sea level once message id 41 arrives: on purpose.
    SetChannelValue(ChannelAltitude, position.heightMetres);
    ShowSirfPosition(position.latitudeDegrees, position.longitudeDegrees);
    ShowNorthingLine(SirfLineNorthing, GraphChannel[ChannelNorthing].Value);
    ShowEastingLine(SirfLineEasting, GraphChannel[ChannelEasting].Value);
    ShowSirfAltitudeEllipsoid(position.heightMetres);
    RecordGraphSample();
}

void DecodeMeasuredNavigation(const SirfMessage& message)
{
    KeepRecord(NavigationRecord, message.bytes, message.length);
    const uint8_t mode = ReadField(NavigationRecord, Mode1), svs = ReadField(NavigationRecord, SvsInFix);
    ShowSirfFix(mode & 7u, svs, mode & 0x80);
    SetChannelValue(ChannelSvsInFix, svs);
    const bool geodeticIsSent = GeodeticRecord[0] == GeodeticNavigation;
    if (!geodeticIsSent) TakeEcefPosition();
    RepaintMainWindow();
}

// ---- Message id 41: everything but the fix line and its satellites -----------------------------------

constexpr MessageField<uint16_t> NavValid{1}; // bit 15: course not valid
constexpr MessageField<uint16_t> NavType{3};  // bits 0 to 2 fix type, bit 12: no speed
constexpr MessageField<uint16_t> UtcYear{11};
constexpr MessageField<uint8_t> UtcMonth{13}, UtcDay{14}; // day 0: UTC is not known yet
constexpr MessageField<uint8_t> UtcHour{15}, UtcMinute{16};
constexpr MessageField<uint16_t> UtcMilliseconds{17};
constexpr MessageField<int32_t> Latitude1e7Deg{23}, Longitude1e7Deg{27};
constexpr MessageField<int32_t> AltitudeEllipsoidCm{31}, AltitudeMslCm{35};
constexpr MessageField<uint8_t> MapDatum{39};
constexpr MessageField<uint16_t> SpeedCmPerS{40}, CourseCentidegrees{42};
constexpr MessageField<uint32_t> EhpeCm{50}, EvpeCm{54};
constexpr MessageField<uint8_t> SvsInFix41{88}, HdopFifths41{89};

constexpr uint16_t NoCourse = 0x8000, NoSpeed = 0x1000, FixTypeBits = 7;

// True if the receiver knows UTC. Otherwise the time of week is used, less the leap seconds of the years in
// which these receivers were made. The first 14 s of a GPS week are the last ones of the UTC week before: one
// week is added before the subtraction; otherwise the result would be below 0, and the time wrong by hours.
bool TakeGeodeticTime()
{
    const uint8_t* const record = GeodeticRecord;
    if (const uint8_t day = ReadField(record, UtcDay)) {
        FixTime.wYear = ReadField(record, UtcYear);
        FixTime.wMonth = ReadField(record, UtcMonth);
        FixTime.wDay = day;
        StoreFixTime(ReadField(record, UtcHour), ReadField(record, UtcMinute),
                     ReadField(record, UtcMilliseconds) / 1000u);
        return true;
    }
    constexpr uint32_t LeapMilliseconds = 14000, WeekMilliseconds = 604800000;
    const uint32_t timeOfWeek = ReadField(record, TimeOfWeekMs);
    const uint32_t time =
        timeOfWeek - LeapMilliseconds + (timeOfWeek < LeapMilliseconds ? WeekMilliseconds : 0);
    StoreFixTime(time / 3600000 % 24, time / 60000 % 60, time % 60000 / 1000);
    return false;
}

void ReportGeodeticNavigation(bool utcIsKnown)
{
    const uint8_t* const record = GeodeticRecord;
    const bool hasSpeed = !(ReadField(record, NavType) & NoSpeed),
               hasCourse = !(ReadField(record, NavValid) & NoCourse);
    BeginFixReport(ModeOfFixType(ReadField(record, NavType) & FixTypeBits));
    LatestFix.HasTimeOfDay = utcIsKnown;
    if (utcIsKnown)
        ReportDate(ReadField(record, UtcYear), ReadField(record, UtcMonth), ReadField(record, UtcDay),
                   (ReadField(record, UtcHour) * 60u + ReadField(record, UtcMinute)) * 60u +
                       ReadField(record, UtcMilliseconds) / 1000u);
    LatestFix.LatitudeDegrees = ReadField(record, Latitude1e7Deg) / 1e7;
    LatestFix.LongitudeDegrees = ReadField(record, Longitude1e7Deg) / 1e7;
    LatestFix.AltitudeEllipsoidMetres = ReadField(record, AltitudeEllipsoidCm) / 1e2;
    LatestFix.AltitudeMslMetres = ReadField(record, AltitudeMslCm) / 1e2;
    LatestFix.GeoidSeparationMetres =
        (static_cast<double>(ReadField(record, AltitudeEllipsoidCm)) - ReadField(record, AltitudeMslCm)) /
        1e2;
    LatestFix.Hdop = ReadField(record, HdopFifths41) / 5.0;
    LatestFix.SatellitesInFix = ReadField(record, SvsInFix41);
    if (LatestFix.Mode == FixMode::None) return;
    LatestFix.HorizontalErrorMetres = ReadField(record, EhpeCm) / 1e2;
    LatestFix.VerticalErrorMetres = ReadField(record, EvpeCm) / 1e2;
    LatestFix.SpeedMetresPerSecond = hasSpeed ? ReadField(record, SpeedCmPerS) / 1e2 : NAN;
    LatestFix.CourseDegrees = hasCourse ? ReadField(record, CourseCentidegrees) / 1e2 : NAN;
}

void DecodeGeodeticNavigation(const SirfMessage& message)
{
    EndCorrections();
    KeepRecord(GeodeticRecord, message.bytes, message.length);
    const uint8_t* const record = GeodeticRecord;
    const double latitude = ReadField(record, Latitude1e7Deg), longitude = ReadField(record, Longitude1e7Deg);

    SetChannelValue(ChannelNorthing, latitude * (MetresPerDegree / PerDegree));
    SetChannelValue(ChannelEasting, longitude * std::cos(latitude * (RadiansPerDegree / PerDegree)) *
                                        (MetresPerDegree / PerDegree));
    SetChannelValue(ChannelEhpe, ReadField(record, EhpeCm) * 0.01);
    SetChannelValue(ChannelEvpe, ReadField(record, EvpeCm) * 0.01);
    SetChannelValue(ChannelAltitude, ReadField(record, AltitudeMslCm) * 0.01);
    SetChannelValue(ChannelHdop, ReadField(record, HdopFifths41) * 0.2);

    const bool utcIsKnown = TakeGeodeticTime(), hasFix = ReadField(record, NavType) & FixTypeBits;
    ReportGeodeticNavigation(utcIsKnown);
    if (hasFix && utcIsKnown && OpenDialogOfKind(DialogKind::Sbas))
        UpdateSkyObjects(FixTime, latitude * 1e-7, longitude * 1e-7);
    ShowTimes();

    ShowHdopLine(SirfLineHdop, GraphChannel[ChannelHdop].Value);
    ShowSirfErrors(GraphChannel[ChannelEhpe].Value, GraphChannel[ChannelEvpe].Value);
    ShowSirfPosition(latitude * 1e-7, longitude * 1e-7);
    ShowNorthingLine(SirfLineNorthing, GraphChannel[ChannelNorthing].Value);
    ShowEastingLine(SirfLineEasting, GraphChannel[ChannelEasting].Value);
    ShowSirfAltitudeEllipsoid(static_cast<float>(ReadField(record, AltitudeEllipsoidCm)) * 0.01f);
    ShowAltitudeMslLine(SirfLineAltitudeMsl, GraphChannel[ChannelAltitude].Value);
    // If there is no new value, the chart and the page keep the old one, on purpose.
    if (!(ReadField(record, NavType) & NoSpeed)) {
        SetChannelValue(ChannelSpeed, ReadField(record, SpeedCmPerS) * 0.01);
        ShowSpeedLine(SirfLineSpeed, GraphChannel[ChannelSpeed].Value);
    }
    if (!(ReadField(record, NavValid) & NoCourse)) {
        SetChannelValue(ChannelCourse, ReadField(record, CourseCentidegrees) * 0.01);
        ShowCourseLine(SirfLineCourse, GraphChannel[ChannelCourse].Value);
    }
    ShowSirfMapDatum(ReadField(record, MapDatum));
    RecordGraphSample();
    RepaintMainWindow();
}

// ---- Message id 4: satellites ------------------------------------------------------------------------

constexpr uint32_t ChannelCountOffset = 7, FirstTrackedChannel = 8, TrackedChannelBytes = 15;
constexpr uint32_t CarrierToNoiseCount = 10; // measurements of a channel, one for each tenth of a second

// Fields of a channel, from its first byte on.
constexpr MessageField<uint8_t> ChannelSvId{0}, ChannelAzimuth{1},
    ChannelElevation{2}; // azimuth 3/2, elevation 1/2 degrees
constexpr MessageField<uint16_t> ChannelState{3};
constexpr uint32_t ChannelCarrierToNoise = 5;

TrackedSatellite ReadChannel(const uint8_t* channel)
{
    constexpr uint16_t WithoutMeasurement = 0x00FF;
    TrackedSatellite satellite;
    satellite.svId = ReadField(channel, ChannelSvId);
    satellite.azimuthDegrees = static_cast<uint16_t>(ReadField(channel, ChannelAzimuth) * 3 / 2);
    satellite.elevationDegrees = ReadField(channel, ChannelElevation) / 2;
    satellite.state = ReadField(channel, ChannelState);
    uint32_t sum = 0;
    if (satellite.state != WithoutMeasurement)
        for (uint32_t i = 0; i < CarrierToNoiseCount; ++i) sum += channel[ChannelCarrierToNoise + i];
    satellite.meanCarrierToNoiseDbHz = static_cast<uint8_t>(sum / CarrierToNoiseCount);
    return satellite;
}

void DecodeMeasuredTracking(const SirfMessage& message)
{
    KeepRecord(TrackingRecord, message.bytes, message.length);
    TrackedSatellite satellites[MaxShownChannels] = {};
    const uint32_t count = std::min<uint32_t>(TrackingRecord[ChannelCountOffset], MaxShownChannels);
    for (uint32_t i = 0; i < count; ++i)
        satellites[i] = ReadChannel(TrackingRecord + FirstTrackedChannel + TrackedChannelBytes * i);
    ShowSirfChannels(satellites, count);
    ShowSbasSatellites(satellites, count);
    BeginSatelliteReport();
    for (uint32_t i = 0; i < count; ++i)
        ReportSatellite({satellites[i].svId, satellites[i].elevationDegrees, satellites[i].azimuthDegrees,
                         satellites[i].meanCarrierToNoiseDbHz});
}

// ---- Answers, refusals, texts ------------------------------------------------------------------------

void DecodeRefusal(const SirfMessage& message)
{
    constexpr uint8_t PollParameter = 168;
    KeepRecord(RefusalRecord, message.bytes, message.length);
    const uint8_t refused = RefusalRecord[1];
    LastRefusedCommand.store(refused);
    uint8_t polled = 0;
    if (refused == PollParameter) {
        polled = PendingPollId.load();
        PendingPollId.store(0);
        if (!polled) return; // the poll of a dialog that opens; the user has not requested it
    }
    PostBox(PostedBox::RefusedCommand, static_cast<uint32_t>(refused << 8 | polled));
}

void DecodeCommandParameters(const SirfMessage& message)
{
    ShowCommandParameters(message.bytes, message.length);
    PendingPollId.store(0);
}

constexpr SirfMessageKind Kinds[] = {
    {MeasuredNavigation, sizeof NavigationRecord, DecodeMeasuredNavigation},
    {MeasuredTracking, sizeof TrackingRecord, DecodeMeasuredTracking},
    {SoftwareVersion, 2, [](const SirfMessage& m) { ShowSoftwareVersion(m.bytes, m.length); }},
    {CommandRefused, sizeof RefusalRecord, DecodeRefusal},
    {OkToSend, OkToSendLength, [](const SirfMessage& m) { ShowOkToSend(m.bytes); }},
    {NavigationParameters, NavigationParametersLength,
     [](const SirfMessage& m) { ShowNavigationParameters(m.bytes); }},
    {DgpsStatus, DgpsStatusLength, [](const SirfMessage& m) { ShowDgpsStatus(m.bytes); }},
    {DifferentialData, CorrectionLength, [](const SirfMessage& m) { ShowCorrection(m.bytes); }},
    {GeodeticNavigation, sizeof GeodeticRecord, DecodeGeodeticNavigation},
    {CommandParameters, 1, DecodeCommandParameters},
    {InternalMessage, 1, [](const SirfMessage& m) { KeepRecord(InternalMessageText, m.bytes, m.readable); }},
    {DevelopmentData, 1, [](const SirfMessage& m) { KeepRecord(DevelopmentText, m.bytes, m.readable); }},
};

void BeginSirf()
{
    BeginProtocol(SirfRecognised);
    ClearArrivalList();
    StoreWorkingPort();
    StoreChosenRate(DialogKind::SetSerialPort, CONTROL_TO_SIRF_BAUDRATE, SettingSirfBaudrate);
}

} // namespace

const std::span<const SirfMessageKind> SirfMessageKinds = Kinds;

void SirfMessageDecoder(const uint8_t* payload, uint32_t length)
{
    if (LinkClosing.load(std::memory_order_relaxed)) return;
    if (!SirfRecognised.load()) BeginSirf();
    if (SearchInProgress.load()) return;

    uint32_t wraps = 0;
    while (wraps < length && payload[wraps] == WrapId) ++wraps;
    if (wraps) WrapEE.store(1);
    if (wraps == length) return;

    const SirfMessage message = {payload + wraps, length - wraps, SirfBufferSize - wraps};
    const uint8_t id = message.bytes[0];
    ShowArrival(id);
    for (const SirfMessageKind& kind : Kinds)
        if (kind.id == id && message.length >= kind.minimumLength) kind.decode(message);
}

void ResetSirfDecoder()
{
    std::memset(NavigationRecord, 0, sizeof NavigationRecord);
    std::memset(TrackingRecord, 0, sizeof TrackingRecord);
    std::memset(RefusalRecord, 0, sizeof RefusalRecord);
    std::memset(GeodeticRecord, 0, sizeof GeodeticRecord);
    std::memset(InternalMessageText, 0, sizeof InternalMessageText);
    std::memset(DevelopmentText, 0, sizeof DevelopmentText);
    WrapEE.store(0);
    PendingPollId.store(0);
    LastRefusedCommand.store(0);
    ClearArrivalList();
    ResetReadBack();
}
