// SPDX-License-Identifier: MIT
#include "nmea/sentence_decoder.h"

#include <cmath>
#include <cstring>

#include "graph/channels.h"
#include "graph/latest_fix.h"
#include "graph/recorder.h"
#include "graph/repaint.h"
#include "link/link_state.h"
#include "link/protocol_recognition.h"
#include "nmea/page_lines.h"
#include "nmea/receiver_messages.h"
#include "resources/resource_ids.h"
#include "settings/settings_store.h"
#include "sky/angles.h"
#include "sky/sky_objects.h"
#include "text/copy.h"
#include "text/format.h"
#include "text/numbers.h"
#include "ui/active_dialog.h"
#include "ui/fix_lines.h"

namespace
{

constexpr double DegreesPerMinute = 0.016666666666666666;
constexpr double MetresPerSecondPerKnot = 0.5147777777777778;  // nautical mile of 1853.2 m, on purpose
constexpr double TrueMetresPerSecondPerKnot = 1852.0 / 3600.0; // for graph/latest_fix.h

// The fields of the current sentence; field 0 is its name.
constexpr uint32_t MaxFields = 20;
char* NmeaFieldTable[MaxFields];
uint8_t FieldCount = 0;

// Last received values; they stay when the port is closed. PDOP is not shown anywhere, so it is not kept.
double Latitude = 0;  // degrees, south negative
double Longitude = 0; // degrees, 0 to 360: west is 360 - value
Satellite SatelliteView[SatelliteCount];
FixMode DimensionsOfGsa = FixMode::Unknown;

// ---- Fields -------------------------------------------------------------------------------------------

char* Field(uint32_t index)
{
    return NmeaFieldTable[index];
}

bool HasField(uint32_t index)
{
    return *Field(index) != 0;
}

// Replaces each comma by a terminator and stores where the fields begin. The twentieth comma ends the table.
void SplitFields(char* sentence)
{
    uint8_t commas = 0;
    NmeaFieldTable[0] = sentence;
    for (char* c = sentence; *c; ++c) {
        if (*c != ',') continue;
        *c = 0;
        if (++commas == MaxFields) {
            FieldCount = MaxFields;
            return;
        }
        NmeaFieldTable[commas] = c + 1;
    }
    FieldCount = static_cast<uint8_t>(commas + 1);
}

// Three consecutive two-digit numbers, read from the last to the first; each is cut off after it is read. The
// field's length is not checked: a field that is too short takes characters of the next field.
struct Triple {
    uint16_t first, second, third;
};
Triple CutTriple(char* field)
{
    Triple triple;
    triple.third = static_cast<uint16_t>(ParseInteger(field + 4));
    field[4] = 0;
    triple.second = static_cast<uint16_t>(ParseInteger(field + 2));
    field[2] = 0;
    triple.first = static_cast<uint16_t>(ParseInteger(field));
    return triple;
}

void TakeTime(uint32_t index) // hhmmss[.sss]
{
    const Triple time = CutTriple(Field(index));
    FixTime.wHour = time.first;
    FixTime.wMinute = time.second;
    FixTime.wSecond = time.third;
    ShowUtcLine(FixTime);
    constexpr DialogKind Showing[] = {DialogKind::SetSerialPort, DialogKind::SwitchToNmea};
    for (const DialogKind kind : Showing)
        if (HWND dialog = OpenDialogOfKind(kind)) ShowTimeOfDay(dialog, CONTROL_NMEA_TIME);
}

// Second of the day for "hhmmss[.sss]"; for other texts any number.
uint32_t SecondOfDay(const char* time)
{
    const uint32_t digits = static_cast<uint32_t>(ParseInteger(time)) % 1000000;
    return (digits / 10000 * 60 + digits / 100 % 100) * 60 + digits % 100;
}

void TakeDate(uint32_t index) // ddmmyy, of RMC
{
    const bool isWhole = std::strlen(Field(index)) == 6;
    const Triple date = CutTriple(Field(index));
    FixTime.wDay = date.first;
    FixTime.wMonth = date.second;
    FixTime.wYear = static_cast<uint16_t>(date.third + 2000);
    ShowUtcLine(FixTime);
    // GPS began in 1980: 97 from an old receiver means 1997.
    if (isWhole)
        ReportDate(date.third + (date.third < 80 ? 2000u : 1900u), date.second, date.first,
                   SecondOfDay(Field(1)));
}

// Converts "dd...mm.mmmm" with `degreeDigits` digits for the degrees; false when the field has another form.
bool ReadAngle(const char* field, uint32_t degreeDigits, double& angle)
{
    const uint32_t point = degreeDigits + 2;
    if (std::strlen(field) < point + 5 || field[point] != '.') return false;
    char degrees[4] = {};
    std::memcpy(degrees, field, degreeDigits);
    angle = ParseInteger(degrees) + ParseDecimal(field + degreeDigits) * DegreesPerMinute;
    return true;
}

// The chart's metres have the precision of 32-bit floats.
double RoundToFloat(double value)
{
    return static_cast<double>(static_cast<float>(value));
}

bool TakeLatitude(uint32_t index)
{
    double angle;
    if (!ReadAngle(Field(index), 2, angle)) return false;
    const char hemisphere = *Field(index + 1);
    ShowLatitudeLine(NmeaLineLatitude, angle, static_cast<unsigned char>(hemisphere));
    Latitude = hemisphere == 'S' ? -angle : angle;
    SetChannelValue(ChannelNorthing, RoundToFloat(Latitude * MetresPerDegree));
    ShowNorthingLine(NmeaLineNorthing, GraphChannel[ChannelNorthing].Value);
    return true;
}

// The sentences of one second repeat the position, and a cosine takes long on a device's processor.
double CosineOfLatitude()
{
    static double latitude = 0, cosine = 1;
    if (Latitude != latitude) {
        latitude = Latitude;
        cosine = std::cos(latitude * RadiansPerDegree);
    }
    return cosine;
}

bool TakeLongitude(uint32_t index)
{
    double angle;
    if (!ReadAngle(Field(index), 3, angle)) return false;
    const char hemisphere = *Field(index + 1);
    ShowLongitudeLine(NmeaLineLongitude, angle, static_cast<unsigned char>(hemisphere));
    Longitude = hemisphere == 'W' ? 360.0 - angle : angle;
    SetChannelValue(ChannelEasting, RoundToFloat(CosineOfLatitude() * Longitude * MetresPerDegree));
    ShowEastingLine(NmeaLineEasting, GraphChannel[ChannelEasting].Value);
    return true;
}

void TakeHdop(uint32_t index)
{
    if (!HasField(index)) return;
    const float hdop = static_cast<float>(ParseDecimal(Field(index)));
    ShowHdopLine(NmeaLineHdop, hdop);
    SetChannelValue(ChannelHdop, hdop);
}

void TakeSpeedKnots(uint32_t index)
{
    if (!HasField(index)) return;
    const double knots = ParseDecimal(Field(index));
    LatestFix.SpeedMetresPerSecond = knots * TrueMetresPerSecondPerKnot;
    const float speed = static_cast<float>(knots * MetresPerSecondPerKnot);
    ShowSpeedLine(NmeaLineSpeed, speed);
    SetChannelValue(ChannelSpeed, speed);
}

void TakeCourse(uint32_t index)
{
    if (!HasField(index)) return;
    LatestFix.CourseDegrees = ParseDecimal(Field(index));
    const float course = static_cast<float>(LatestFix.CourseDegrees);
    ShowCourseLine(NmeaLineCourse, course);
    SetChannelValue(ChannelCourse, course);
}

// ---- The latest fix (graph/latest_fix.h) ----------------------------------------------------------------

// Only GSA reports two or three dimensions; without GSA a fix with an altitude counts as three-dimensional.
FixMode ModeOfQuality()
{
    if (!HasField(6) || ParseInteger(Field(6)) == 0) return FixMode::None;
    if (DimensionsOfGsa == FixMode::TwoD || DimensionsOfGsa == FixMode::ThreeD) return DimensionsOfGsa;
    return HasField(9) ? FixMode::ThreeD : FixMode::TwoD;
}

void ReportPosition()
{
    if (std::fabs(Latitude) > 90.0 || Longitude < 0.0 || Longitude > 360.0) return;
    LatestFix.LatitudeDegrees = Latitude;
    LatestFix.LongitudeDegrees = Longitude > 180.0 ? Longitude - 360.0 : Longitude;
}

void ReportNumbersOfGga()
{
    if (HasField(7)) LatestFix.SatellitesInFix = ParseInteger(Field(7));
    if (HasField(8)) LatestFix.Hdop = ParseDecimal(Field(8));
    if (HasField(9)) LatestFix.AltitudeMslMetres = ParseDecimal(Field(9));
    if (HasField(11)) LatestFix.GeoidSeparationMetres = ParseDecimal(Field(11));
    LatestFix.AltitudeEllipsoidMetres = LatestFix.AltitudeMslMetres + LatestFix.GeoidSeparationMetres;
}

void ReportSatellitesInView()
{
    BeginSatelliteReport();
    for (const Satellite& each : SatelliteView)
        ReportSatellite({each.prn, each.elevationDegrees, each.azimuthDegrees, each.carrierToNoiseDbHz});
}

// ---- Sentences ----------------------------------------------------------------------------------------

// $GPGGA,time,lat,N,lon,E,quality,satellites,HDOP,altitude,M,geoid separation,M,DGPS age,station
void DecodeGga()
{
    BeginFixReport(ModeOfQuality());
    LatestFix.HasTimeOfDay = std::strlen(Field(1)) >= 6;
    TakeTime(1);
    const bool hasLatitude = TakeLatitude(2), hasLongitude = TakeLongitude(4);
    if (hasLatitude && hasLongitude) ReportPosition();
    ReportNumbersOfGga();
    if (HasField(7)) SetChannelValue(ChannelSvsInFix, ParseInteger(Field(7)));
    TakeHdop(8);
    float altitude = 0;
    if (HasField(9)) {
        altitude = static_cast<float>(ParseDecimal(Field(9)));
        ShowAltitudeMslLine(NmeaLineAltitudeMsl, altitude);
        SetChannelValue(ChannelAltitude, altitude);
    }
    if (HasField(11)) {
        const float separation = static_cast<float>(ParseDecimal(Field(11)));
        ShowGeoidSeparation(separation);
        // Subtracted on purpose: the chart's altitude differs from the page's altitude by the separation.
        if (HasField(9)) SetChannelValue(ChannelAltitude, altitude - separation);
    }
    if (HasField(6)) ShowFix(ParseInteger(Field(6)), ParseInteger(Field(7)), ParseInteger(Field(13)));
    RecordGraphSample();
    RepaintMainWindow();
}

// $GPGLL,lat,N,lon,E,time,status[,mode]
void DecodeGll()
{
    TakeLatitude(1);
    TakeLongitude(3);
    TakeTime(5);
    RepaintMainWindow();
}

// $GPGSA,mode,fix,12 satellites,PDOP,HDOP,VDOP
void DecodeGsa()
{
    constexpr FixMode Modes[] = {FixMode::Unknown, FixMode::None, FixMode::TwoD, FixMode::ThreeD};
    const int32_t dimensions = ParseInteger(Field(2));
    DimensionsOfGsa = dimensions >= 1 && dimensions <= 3 ? Modes[dimensions] : FixMode::Unknown;
    TakeHdop(16);
    if (HasField(17)) {
        LatestFix.Vdop = ParseDecimal(Field(17));
        const float vdop = static_cast<float>(LatestFix.Vdop);
        ShowVdop(vdop);
        SetChannelValue(ChannelVdop, vdop);
    }
    RepaintMainWindow();
}

// $GPGSV,messages,number,in view,then up to four times PRN,elevation,azimuth,C/No
void DecodeGsv()
{
    constexpr uint32_t FirstGroup = 4, FieldsPerGroup = 4, GroupsPerMessage = 4;
    const uint8_t number = static_cast<uint8_t>(ParseInteger(Field(2)));
    const int32_t inView = ParseInteger(Field(3));
    if (number >= 1 && number <= SatelliteCount / GroupsPerMessage) {
        Satellite* satellite = SatelliteView + (number - 1) * GroupsPerMessage;
        for (uint32_t i = FirstGroup; i < FieldCount; i += FieldsPerGroup, ++satellite) {
            satellite->prn = static_cast<uint8_t>(ParseInteger(Field(i)));
            satellite->elevationDegrees = static_cast<uint8_t>(ParseInteger(Field(i + 1)));
            satellite->azimuthDegrees = static_cast<uint32_t>(ParseInteger(Field(i + 2)));
            satellite->carrierToNoiseDbHz = static_cast<uint8_t>(ParseInteger(Field(i + 3)));
        }
    }
    if (*Field(2) != *Field(1)) return; // not the group's last message
    for (uint32_t i = inView > 0 ? static_cast<uint32_t>(inView) : 0; i < SatelliteCount; ++i) {
        SatelliteView[i].prn = 0;
        SatelliteView[i].carrierToNoiseDbHz = 0;
    }
    ShowSatellites(SatelliteView);
    ReportSatellitesInView();
    RepaintMainWindow();
}

// $GPRMC,time,status,lat,N,lon,E,knots,course,date,variation,E[,mode]; the status is ignored
void DecodeRmc()
{
    TakeDate(9);
    TakeTime(1);
    TakeLatitude(3);
    TakeLongitude(5);
    if (HasField(3) && ActiveDialogKind.load() == DialogKind::Sbas) {
        // Only the low eight bits of the year are passed on; they affect Sun and Moon only.
        SYSTEMTIME time = FixTime;
        time.wYear &= 0xFF;
        UpdateSkyObjects(time, Latitude, Longitude);
    }
    TakeSpeedKnots(7);
    TakeCourse(8);
    RepaintMainWindow();
}

// $GPVTG,course,T,magnetic,M,knots,N,km/h,K[,mode]
void DecodeVtg()
{
    TakeCourse(1);
    TakeSpeedKnots(5);
    RepaintMainWindow();
}

// $GPZDA,time,day,month,year,zone hours,zone minutes; not shown
void DecodeZda()
{
    ReportDate(static_cast<uint32_t>(ParseInteger(Field(4))), static_cast<uint32_t>(ParseInteger(Field(3))),
               static_cast<uint32_t>(ParseInteger(Field(2))), SecondOfDay(Field(1)));
}

// ---- Receiver text ------------------------------------------------------------------------------------

constexpr char TextSentence[] = "PSRFTXT";
constexpr size_t TextSentenceLength = sizeof TextSentence - 1;

// "POS:" x y z, metres; if a number is missing, its control keeps its text.
void ShowStartPosition(HWND dialog, const char* text)
{
    constexpr int Controls[] = {CONTROL_NAVINIT_ECEF_X, CONTROL_NAVINIT_ECEF_Y, CONTROL_NAVINIT_ECEF_Z};
    for (const int control : Controls) {
        while (*text == ' ') ++text;
        if (!*text) return;
        SetDlgItemInt(dialog, control, static_cast<UINT>(ParseInteger(text)), TRUE);
        while (*text && *text != ' ') ++text;
    }
}

// Start-up lines that fill the fields of the Navigation Initialization dialog.
void ShowStartValues(HWND dialog, const char* text)
{
    struct StartLine {
        const char* start;
        int control;
    };
    constexpr StartLine Lines[] = {{"TOW:", CONTROL_NAVINIT_TIME_OF_WEEK},
                                   {"WK:", CONTROL_NAVINIT_WEEK},
                                   {"CLK:", CONTROL_NAVINIT_CLOCK_OFFSET},
                                   {"CHNL:", CONTROL_NAVINIT_CHANNELS}};
    if (StartsWith(text, "POS:")) ShowStartPosition(dialog, text + 4);
    for (const StartLine& line : Lines)
        if (StartsWith(text, line.start))
            SetDlgItemInt(dialog, line.control,
                          static_cast<UINT>(ParseInteger(text + std::strlen(line.start))), TRUE);
}

// The text is in field 1, or directly after the name; of other sentences only the name is shown.
void DecodeText()
{
    const bool isText = StartsWith(Field(0), TextSentence);
    const char* text = !isText ? Field(0) : FieldCount < 2 ? Field(0) + TextSentenceLength : Field(1);
    constexpr char BaudRate[] = "Baud rate:";
    if (StartsWith(text, BaudRate))
        NmeaReportedBaud.store(static_cast<uint32_t>(ParseInteger(text + sizeof BaudRate - 1)));
    if (HWND dialog = OpenDialogOfKind(DialogKind::NavigationInitialization)) ShowStartValues(dialog, text);
    AppendReceiverMessage(text);
    ShowReceiverMessages();
}

// ---- Dispatch -----------------------------------------------------------------------------------------

constexpr SentenceKind Kinds[] = {
    {"GPGGA", FieldCounts(15), CONTROL_STAMP_GGA, DecodeGga},
    {"GPGLL", FieldCounts(7, 8), CONTROL_STAMP_GLL, DecodeGll},
    {"GPGSA", FieldCounts(18), CONTROL_STAMP_GSA, DecodeGsa},
    {"GPGSV", FieldCounts(8, 12, 16, 20), CONTROL_STAMP_GSV, DecodeGsv},
    {"GPMSS", 0, CONTROL_STAMP_MSS, nullptr},
    {"GPRMC", FieldCounts(12, 13), CONTROL_STAMP_RMC, DecodeRmc},
    {"GPVTG", FieldCounts(9, 10), CONTROL_STAMP_VTG, DecodeVtg},
    {"GPZDA", FieldCounts(7), CONTROL_STAMP_ZDA, DecodeZda},
    {"PSRF150", 0, CONTROL_STAMP_SRF150, nullptr},
};
constexpr SentenceKind TextKind = {TextSentence, AnyFieldCount, CONTROL_STAMP_SRFTXT, DecodeText};
constexpr SentenceKind OtherKind = {"", AnyFieldCount, CONTROL_STAMP_OTHER, DecodeText};

const SentenceKind& FindKind(const char* name)
{
    for (const SentenceKind& kind : Kinds)
        if (std::strcmp(name, kind.name) == 0) return kind;
    return StartsWith(name, TextSentence) ? TextKind : OtherKind;
}

void StampArrival(int control)
{
    HWND dialog = ActiveDialogWindow.load();
    if (!dialog) return;
    SYSTEMTIME now;
    GetLocalTime(&now);
    wchar_t stamp[16];
    Format(stamp, L"%02u:%02u:%02u", now.wHour, now.wMinute, now.wSecond);
    SetDlgItemTextW(dialog, control, stamp);
}

void BeginNmea()
{
    BeginProtocol(NmeaRecognised);
    AskForStartUpText();
    StoreWorkingPort();
    StoreChosenRate(DialogKind::SwitchToNmea, CONTROL_TO_NMEA_BAUDRATE, SettingNmeaBaudrate);
}

} // namespace

const std::span<const SentenceKind> SentenceKinds = Kinds;

void NmeaDispatcher(char* sentence)
{
    if (LinkClosing.load(std::memory_order_relaxed)) return;
    if (!NmeaRecognised.load()) BeginNmea();
    if (SearchInProgress.load()) return;
    SplitFields(sentence);
    const SentenceKind& kind = FindKind(Field(0));
    StampArrival(kind.stampControl);
    if (kind.fieldCounts & FieldCounts(FieldCount)) kind.decode();
}

void ResetNmeaDecoder()
{
    FieldCount = 0;
    Latitude = Longitude = 0;
    DimensionsOfGsa = FixMode::Unknown;
    for (Satellite& satellite : SatelliteView) satellite = {};
    ReceiverMessagesText[0] = 0;
    ClearOnNextAppend.store(0);
}
