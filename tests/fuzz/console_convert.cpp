// SPDX-License-Identifier: MIT
// Logs that the console program converts and passes on: the first byte chooses the sizes of the portions, the
// rest is the log.
#include <cstdlib>

#include "console/mend_dates.h"
#include "console/track.h"
#include "tests/fuzz/input.h"
#include "tests/support/fresh_reception.h"

using namespace console;

namespace
{

constexpr const char* Formats[] = {"gpx", "kml", "csv", "json"};

// A track that grows by no more than some bytes for each sample.
struct Track {
    std::string text;
    std::unique_ptr<TrackWriter> writer;
    Segments segments;
};

Date OneEpochLater(const Date& date)
{
    const Date later = DateOf(DaysOf(date) + DaysPerEpoch);
    return IsDate(later) ? later : date;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    const size_t portion = 1 + input.Byte();
    const std::string log = input.Rest();
    StartReceptionAfresh();

    Track tracks[std::size(Formats)];
    for (size_t i = 0; i < std::size(Formats); ++i) {
        tracks[i].writer =
            MakeTrackWriter(Formats[i], [&text = tracks[i].text](std::string_view part) { text += part; });
        tracks[i].writer->Begin();
    }
    size_t samples = 0;
    SampleGatherer gatherer([&](Sample sample) {
        ++samples;
        CorrectSample(sample, {{2026, 11, 21}, ReferenceKind::Given});
        if (TpvLine(sample).size() > 500 || SkyLine(LatestFix).size() > 1500) std::abort();
        if (!sample.IsPoint()) return;
        for (Track& track : tracks) track.writer->Point(sample, track.segments.BeginsWith(sample));
    });
    DateMender mender(OneEpochLater);
    size_t mended = 0;
    for (size_t at = 0; at < log.size(); at += portion) {
        const std::span<const uint8_t> part(reinterpret_cast<const uint8_t*>(log.data()) + at,
                                            std::min(portion, log.size() - at));
        Feed(part);
        mended += mender.Feed(part).size();
    }
    gatherer.Flush();
    // A date has as many digits as before.
    if (mended + mender.Finish().size() != log.size()) std::abort();
    for (Track& track : tracks) {
        track.writer->End();
        if (track.text.size() > 1000 + samples * 500) std::abort();
    }
    return 0;
}
