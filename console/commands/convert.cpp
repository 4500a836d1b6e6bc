// SPDX-License-Identifier: MIT
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>

#include "console/commands/commands.h"
#include "console/correction_options.h"
#include "console/files.h"
#include "console/input_reader.h"
#include "console/system.h"
#include "console/track.h"
#include "link/link_state.h"

namespace console
{

namespace
{

namespace fs = std::filesystem;

struct Arguments {
    std::vector<std::string> files;
    std::string format, output;
    CorrectionOptions correction;
};

// Destination of the track: a file, or standard output.
class TrackFile
{
public:
    TrackFile(Output& output, const std::string& name) : output_(output)
    {
        if (!name.empty()) file_.emplace(name);
    }

    bool IsStandardOutput() const { return !file_; }

    void Write(std::string_view text)
    {
        if (file_) {
            file_->Write(text);
            return;
        }
        buffer_ += text;
        if (buffer_.size() >= Portion) Flush();
    }

    void Finish()
    {
        if (file_)
            file_->Finish();
        else
            Flush();
    }

private:
    static constexpr size_t Portion = 32768;

    void Flush() { output_.Raw(std::exchange(buffer_, {})); }

    Output& output_;
    std::optional<NewFile> file_;
    std::string buffer_;
};

Date DateOfFile(const std::string& name)
{
    std::error_code error;
    const auto changed = fs::last_write_time(PathOf(name), error);
    if (error) return Today();
    const auto system = std::chrono::file_clock::to_sys(changed);
    return DateOf(std::chrono::floor<std::chrono::days>(system).time_since_epoch().count());
}

class Conversion
{
public:
    Conversion(Context& context, const Arguments& arguments)
        : arguments_(arguments),
          notes_(context.output),
          file_(context.output, arguments.output),
          writer_(MakeTrackWriter(arguments.format, [this](std::string_view text) { file_.Write(text); })),
          gatherer_([this](const Sample& sample) { Put(sample); })
    {
        listener_.decoded = [this] { PutSatellites(); };
        writer_->Begin();
    }

    void Read(const std::string& name)
    {
        const bool isStandardInput = name == "-";
        gatherer_.Flush();
        reference_ = arguments_.correction.ReferenceOr(
            isStandardInput ? Reference{Today(), ReferenceKind::Clock}
                            : Reference{DateOfFile(name), ReferenceKind::File});
        InputReader input(loop_, name);
        for (std::string portion; input.Next(portion);)
            Feed({reinterpret_cast<const uint8_t*>(portion.data()), portion.size()});
        bytes_ += input.BytesRead();
    }

    void End()
    {
        gatherer_.Flush();
        // Data without a message makes no track, so a file that is there already stays.
        if (NmeaMessageCount.load() + SirfMessageCount.load() == 0) {
            if (bytes_ == 0) Fail(FailureKind::Silent, "no byte to convert");
            Fail(FailureKind::Noise,
                 "neither a sentence nor a message in " + std::to_string(bytes_) + " bytes");
        }
        Finish();
    }

    uint64_t Points() const { return points_; }

    // After an interruption, the points read until then make a complete track. Without any point a file that
    // is there already stays.
    void EndEarly()
    {
        gatherer_.Flush();
        if (points_ > 0 || file_.IsStandardOutput()) Finish();
    }

private:
    void Finish()
    {
        writer_->End();
        file_.Finish();
    }

    void Put(Sample sample)
    {
        if (!sample.IsPoint()) return;
        if (arguments_.correction.wanted)
            if (const auto correction = CorrectSample(sample, reference_)) notes_.Take(*correction);
        ++points_;
        writer_->Point(sample, segments_.BeginsWith(sample));
    }

    void PutSatellites()
    {
        if (LatestFix.InViewReports == satelliteReports_) return;
        satelliteReports_ = LatestFix.InViewReports;
        writer_->Satellites();
    }

    const Arguments& arguments_;
    EventLoop loop_;
    CorrectionNotes notes_;
    TrackFile file_;
    std::unique_ptr<TrackWriter> writer_;
    Segments segments_;
    Reference reference_;
    uint64_t points_ = 0, bytes_ = 0;
    uint32_t satelliteReports_ = LatestFix.InViewReports;
    SampleGatherer gatherer_;
    Listener listener_;
};

void RefuseOverwriting(const Arguments& arguments)
{
    for (const std::string& name : arguments.files) {
        std::error_code error;
        if (!arguments.output.empty() && fs::equivalent(PathOf(name), PathOf(arguments.output), error) &&
            !error)
            Fail(FailureKind::Usage, arguments.output + ": would be read and written at once");
    }
}

void Convert(Context& context, const Arguments& arguments)
{
    if (!arguments.output.empty() || arguments.format == "json") {
        // Standard output is free for the JSON object, or contains lines of JSON already.
        if (arguments.format == "json" && arguments.output.empty()) context.output.noObject = true;
    } else {
        RefuseJson(context, "convert");
    }
    RefuseOverwriting(arguments);
    for (const std::string& name : arguments.files) // before anything is written
        if (name != "-" && !std::ifstream(PathOf(name), std::ios::binary))
            Fail(FailureKind::Failed, name + ": " + std::strerror(errno));
    Conversion conversion(context, arguments);
    try {
        for (const std::string& name : arguments.files) conversion.Read(name);
    } catch (const Failure& failure) {
        if (failure.kind == FailureKind::Interrupted) conversion.EndEarly();
        throw;
    }
    conversion.End();
    context.output.object["points"] = conversion.Points();
    if (conversion.Points() == 0)
        context.output.Note("no sample has a position and a fix: the track is empty");
}

} // namespace

Action DefineConvert(Parser& parser)
{
    const auto arguments = std::make_shared<Arguments>();
    parser.NeedsNoPort();
    parser
        .Option("FILE", arguments->files,
                "log of NMEA, SiRF binary or both; several are one stream, - is standard input")
        .Required();
    parser.Option("--to", arguments->format, "gpx, kml, csv or json")
        .Required()
        .OneOf({"gpx", "kml", "csv", "json"})
        .TypeName("FORMAT");
    parser.Option("-o,--output", arguments->output, "file to write; else standard output").TypeName("FILE");
    arguments->correction.Define(parser, "the file's last change");
    return [arguments](Context& context) { Convert(context, *arguments); };
}

} // namespace console
