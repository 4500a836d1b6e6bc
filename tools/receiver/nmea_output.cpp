// SPDX-License-Identifier: MIT
#include "nmea_output.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace receiver
{

namespace
{

template <typename... Values> std::string Format(const char* format, Values... values)
{
    char text[256];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

// 1234.5678,N for 12 degrees; the rounding to 1/10000 minute happens once, so that 60.0000 cannot appear.
std::string Angle(double degrees, int degreeDigits, char positive, char negative)
{
    const auto tenThousandths = static_cast<int64_t>(std::llround(std::abs(degrees) * 600000.0));
    return Format("%0*d%02d.%04d,%c", degreeDigits, static_cast<int>(tenThousandths / 600000),
                  static_cast<int>(tenThousandths / 10000 % 60), static_cast<int>(tenThousandths % 10000),
                  degrees < 0 ? negative : positive);
}

std::string Position(const Fix& fix, const Settings& settings)
{
    if (!fix.Valid()) return ",,,";
    const Geodetic place = InDatum(fix.place, settings.datum);
    return Angle(place.latitudeDeg, 2, 'N', 'S') + "," + Angle(place.longitudeDeg, 3, 'E', 'W');
}

std::string Time(const Fix& fix)
{
    const UtcDate utc = fix.Utc();
    return Format("%02d%02d%02d.%03d", utc.hour, utc.minute, utc.second, utc.ms);
}

char Mode(const Fix& fix) // mode indicator of RMC, GLL and VTG
{
    if (!fix.Valid()) return 'N';
    if (fix.type == FixType::DeadReckoning) return 'E';
    return fix.differential ? 'D' : 'A';
}

// NMEA numbers SBAS satellites from 33 on.
int NmeaPrn(uint8_t sv)
{
    return IsSbas(sv) ? sv - 87 : sv;
}

double Knots(const Fix& fix)
{
    return fix.speedMps * 3600.0 / 1852.0;
}

std::string GgaBody(const Fix& fix, const Settings& settings)
{
    int quality = 0;
    if (fix.Valid()) quality = fix.type == FixType::DeadReckoning ? 6 : fix.differential ? 2 : 1;
    std::string body = "GPGGA," + Time(fix) + "," + Position(fix, settings);
    body += Format(",%d,%02d", quality, fix.used);
    if (quality == 0) return body + ",,,M,,M,,0000";
    const double separation = GeoidSeparationM(fix.place);
    body += Format(",%.1f,%.1f,M,%.1f,M,", fix.hdop, fix.place.heightM - separation, separation);
    if (quality == 2) body += Format("%.1f", fix.correctionAgeS + 2.0);
    return body + ",0000";
}

std::string GllBody(const Fix& fix, const Settings& settings)
{
    return "GPGLL," + Position(fix, settings) + "," + Time(fix) +
           Format(",%c,%c", fix.Valid() ? 'A' : 'V', Mode(fix));
}

std::string GsaBody(const Fix& fix)
{
    int mode = 1;
    if (fix.Valid()) mode = fix.type == FixType::ThreeD ? 3 : 2;
    std::string body = Format("GPGSA,A,%d", mode);
    size_t listed = 0;
    for (const Channel& channel : fix.channels) {
        if (channel.used) {
            body += Format(",%02d", channel.sv);
            ++listed;
        }
    }
    for (; listed < ChannelCount; ++listed) body += ",";
    if (mode == 1) return body + ",,,";
    return body + Format(",%.1f,%.1f,%.1f", fix.pdop, fix.hdop, fix.vdop);
}

std::vector<std::string> GsvBodies(const Fix& fix)
{
    std::vector<const Channel*> seen;
    for (const Channel& channel : fix.channels) {
        if (channel.sv != 0) seen.push_back(&channel);
    }
    const size_t count = std::max<size_t>(1, (seen.size() + 3) / 4);
    std::vector<std::string> bodies;
    for (size_t message = 0; message < count; ++message) {
        std::string body = Format("GPGSV,%d,%d,%02d", static_cast<int>(count), static_cast<int>(message + 1),
                                  static_cast<int>(seen.size()));
        for (size_t i = message * 4; i < std::min(seen.size(), message * 4 + 4); ++i) {
            const Channel& channel = *seen[i];
            body += Format(",%02d,%02d,%03d,", NmeaPrn(channel.sv),
                           static_cast<int>(std::lround(channel.look.elevationDeg)),
                           static_cast<int>(std::lround(channel.look.azimuthDeg)) % 360);
            if (channel.MeanCno() > 0) body += Format("%02d", channel.MeanCno());
        }
        // If nothing is in view, one group of empty fields keeps the sentence regular.
        if (seen.empty()) body += ",,,,";
        bodies.push_back(body);
    }
    return bodies;
}

std::string RmcBody(const Fix& fix, const Settings& settings)
{
    const UtcDate utc = fix.Utc();
    std::string body =
        "GPRMC," + Time(fix) + Format(",%c,", fix.Valid() ? 'A' : 'V') + Position(fix, settings);
    body += fix.Valid() ? Format(",%.2f,%.2f", Knots(fix), fix.courseDeg) : ",,";
    return body + Format(",%02d%02d%02d,,,%c", utc.day, utc.month, utc.year % 100, Mode(fix));
}

std::string VtgBody(const Fix& fix)
{
    if (!fix.Valid()) return "GPVTG,,T,,M,,N,,K,N";
    return Format("GPVTG,%.2f,T,,M,%.2f,N,%.1f,K,%c", fix.courseDeg, Knots(fix), fix.speedMps * 3.6,
                  Mode(fix));
}

std::string MssBody(const Settings& settings)
{
    const Dgps dgps = DgpsOf(settings);
    if (dgps.source != DgpsSource::InternalBeacon) return "GPMSS,0,0,0.0,0,";
    return Format("GPMSS,55,27,%.1f,%d,", dgps.beaconHz * 0.001, dgps.beaconBps);
}

std::string ZdaBody(const Fix& fix)
{
    const UtcDate utc = fix.Utc();
    return "GPZDA," + Time(fix) + Format(",%02d,%02d,%04d,,", utc.day, utc.month, utc.year);
}

} // namespace

uint8_t NmeaChecksum(std::string_view body)
{
    uint8_t checksum = 0;
    for (const char c : body) checksum = static_cast<uint8_t>(checksum ^ static_cast<uint8_t>(c));
    return checksum;
}

Bytes FrameNmea(std::string_view body, bool checksum)
{
    std::string sentence = "$" + std::string(body);
    if (checksum) sentence += Format("*%02X", NmeaChecksum(body));
    sentence += "\r\n";
    return Bytes(sentence.begin(), sentence.end());
}

std::vector<std::string> NmeaBodies(NmeaMessage message, const Fix& fix, const Settings& settings)
{
    switch (message) {
    case Gga: return {GgaBody(fix, settings)};
    case Gll: return {GllBody(fix, settings)};
    case Gsa: return {GsaBody(fix)};
    case Gsv: return GsvBodies(fix);
    case Rmc: return {RmcBody(fix, settings)};
    case Vtg: return {VtgBody(fix)};
    case Mss: return {MssBody(settings)};
    case Zda: return {ZdaBody(fix)};
    case User8:
    case User10:
    case NmeaMessageCount: break;
    }
    return {};
}

} // namespace receiver
