// SPDX-License-Identifier: Apache-2.0
#include "Dump.h"

#include <fcntl.h>
#include <media/NdkMediaExtractor.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>

#include "JsonLine.h"
#include "SampleLines.h"
#include "TrackLine.h"

namespace ogmdump {
namespace {

/** The schema version of ogmprobe's JSON. */
constexpr int64_t kSchemaVersion = 1;

struct Failure {
    ExitCode code;
    std::string message;
};

class OpenFile {
  public:
    explicit OpenFile(const std::string& path) : mDescriptor(open(path.c_str(), O_RDONLY)) {}
    ~OpenFile() {
        if (mDescriptor >= 0) {
            close(mDescriptor);
        }
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int descriptor() const { return mDescriptor; }
    off64_t size() const {
        struct stat status {};
        return fstat(mDescriptor, &status) == 0 ? status.st_size : 0;
    }

  private:
    const int mDescriptor;
};

struct DeleteExtractor {
    void operator()(AMediaExtractor* extractor) const { AMediaExtractor_delete(extractor); }
};
struct DeleteFormat {
    void operator()(AMediaFormat* format) const { AMediaFormat_delete(format); }
};
using Extractor = std::unique_ptr<AMediaExtractor, DeleteExtractor>;
using Format = std::unique_ptr<AMediaFormat, DeleteFormat>;

class Dumper {
  public:
    Dumper(const DumpOptions& options, FILE* out)
        : mOptions(options), mOut(out), mExtractor(AMediaExtractor_new()) {}

    ExitCode run() {
        write(JsonLine()
                      .text("type", std::string("header"))
                      .number("schema_version", kSchemaVersion)
                      .text("digest", std::string("fnv1a64")));
        const auto failure = dumpFile();
        const ExitCode code = failure ? failure->code : kDone;
        std::optional<JsonLine> error;
        if (failure) {
            error = JsonLine().number("exit_code", code).text("message", failure->message);
        }
        write(JsonLine()
                      .text("type", std::string("end"))
                      .number("exit_code", code)
                      .array("errors", error)
                      .array("warnings", std::nullopt));
        return code;
    }

  private:
    void write(const JsonLine& line) { std::fprintf(mOut, "%s\n", line.line().c_str()); }

    std::optional<Failure> dumpFile() {
        const OpenFile file(mOptions.path);
        if (file.descriptor() < 0) {
            return Failure{kFile, std::string("cannot open: ") + std::strerror(errno)};
        }
        const media_status_t status = AMediaExtractor_setDataSourceFd(
                mExtractor.get(), file.descriptor(), 0, file.size());
        if (status != AMEDIA_OK) {
            return Failure{kNotTaken, "no extractor takes the file: " + std::to_string(status)};
        }
        if (auto failure = selectTracks()) {
            return failure;
        }
        return dumpSamples();
    }

    /** Selects all tracks, one after the other, as apps do. */
    std::optional<Failure> selectTracks() {
        const size_t count = AMediaExtractor_getTrackCount(mExtractor.get());
        for (size_t i = 0; i < count; ++i) {
            const Format format(AMediaExtractor_getTrackFormat(mExtractor.get(), i));
            std::fprintf(mOut, "%s\n", trackLine(i, format.get()).c_str());
            if (AMediaExtractor_selectTrack(mExtractor.get(), i) != AMEDIA_OK) {
                return Failure{kFile, "track " + std::to_string(i) + " cannot be selected"};
            }
        }
        return std::nullopt;
    }

    std::optional<Failure> dumpSamples() {
        SampleLines lines(mOut, AMediaExtractor_getTrackCount(mExtractor.get()), mOptions.count);
        if (mOptions.seeksUs.empty()) {
            return dumpFromHere(lines);
        }
        for (const int64_t targetUs : mOptions.seeksUs) {
            write(JsonLine().text("type", std::string("seek")).number("target_us", targetUs));
            AMediaExtractor_seekTo(mExtractor.get(), targetUs, AMEDIAEXTRACTOR_SEEK_CLOSEST_SYNC);
            if (auto failure = dumpFromHere(lines)) {
                return failure;
            }
        }
        return std::nullopt;
    }

    std::optional<Failure> dumpFromHere(SampleLines& lines) {
        std::optional<Failure> failure;
        while (!failure && !lines.isFull() &&
               AMediaExtractor_getSampleTrackIndex(mExtractor.get()) >= 0) {
            failure = dumpSample(lines);
            AMediaExtractor_advance(mExtractor.get());
        }
        lines.end();
        return failure;
    }

    std::optional<Failure> dumpSample(SampleLines& lines) {
        AMediaExtractor* extractor = mExtractor.get();
        const ssize_t size = AMediaExtractor_getSampleSize(extractor);
        mBytes.resize(size > 0 ? static_cast<size_t>(size) : 0);
        // The data() of an empty vector may be null.
        uint8_t none = 0;
        uint8_t* bytes = mBytes.empty() ? &none : mBytes.data();
        if (size < 0 || AMediaExtractor_readSampleData(extractor, bytes, mBytes.size()) != size) {
            return Failure{kFile, "a sample cannot be read"};
        }
        Sample sample;
        sample.track = static_cast<size_t>(AMediaExtractor_getSampleTrackIndex(extractor));
        sample.timeUs = AMediaExtractor_getSampleTime(extractor);
        sample.isSync =
                (AMediaExtractor_getSampleFlags(extractor) & AMEDIAEXTRACTOR_SAMPLE_FLAG_SYNC) != 0;
        sample.size = mBytes.size();
        sample.digest = digestOf(bytes, mBytes.size());
        lines.add(sample);
        return std::nullopt;
    }

    const DumpOptions& mOptions;
    FILE* const mOut;
    const Extractor mExtractor;
    std::vector<uint8_t> mBytes;
};

}  // namespace

ExitCode dump(const DumpOptions& options, FILE* out) {
    return Dumper(options, out).run();
}

}  // namespace ogmdump
