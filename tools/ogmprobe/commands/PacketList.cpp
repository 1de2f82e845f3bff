// SPDX-License-Identifier: Apache-2.0
#include "commands/PacketList.h"

#include <fmt/core.h>

#include <optional>
#include <string>

#include "records/Digest.h"
#include "text/Csv.h"
#include "text/Json.h"
#include "text/TimeText.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

std::string digestText(const Packet& packet) {
    return fmt::format("{:016x}", fnv1a64(packet.bytes));
}

std::string timeText(const std::optional<int64_t>& timeUs, bool clock) {
    return timeUs && clock ? clockText(*timeUs) : secondsText(timeUs);
}

class PacketTable : public PacketList {
  public:
    PacketTable(Output& output, bool clock) : mOutput(output), mClock(clock) {}

    void file(const std::string& path) override {
        mOutput.write(fmt::format("# {}\n", visible(path)));
    }

    void begin() override { line("track", "time", "until next", "size", "sync", "digest"); }

    void seek(int64_t targetUs) override {
        mOutput.write(fmt::format("# seek to {}\n", secondsText(targetUs)));
    }

    void packet(const PacketPlayed& packet) override {
        line(packet.track, timeText(packet.packet.timeUs, mClock), secondsText(packet.untilNextUs),
             packet.packet.bytes.size(), packet.packet.isSync ? "K" : "-",
             digestText(packet.packet));
    }

    void end(const Report&) override {}

  private:
    template <typename Track, typename Size>
    void line(const Track& track, const std::string& time, const std::string& untilNext,
              const Size& size, const char* sync, const std::string& digest) {
        mOutput.write(fmt::format("{:>5}  {:>14}  {:>12}  {:>8}  {:<4}  {}\n", track, time,
                                  untilNext, size, sync, digest));
    }

    Output& mOutput;
    const bool mClock;
};

class PacketCsv : public PacketList {
  public:
    PacketCsv(Output& output, bool clock) : mOutput(output), mClock(clock) {}

    void begin() override { mOutput.write("file,seek,track,time,until_next,size,sync,digest\n"); }
    void file(const std::string& path) override {
        mFile = csvText(path);
        mSeek.clear();
    }
    void seek(int64_t targetUs) override { mSeek = timeText(targetUs, mClock); }
    void packet(const PacketPlayed& packet) override {
        mOutput.write(fmt::format("{},{},{},{},{},{},{},{}\n", mFile, mSeek, packet.track,
                                  timeText(packet.packet.timeUs, mClock),
                                  packet.untilNextUs ? secondsText(*packet.untilNextUs) : "",
                                  packet.packet.bytes.size(), packet.packet.isSync ? 1 : 0,
                                  digestText(packet.packet)));
    }
    void end(const Report&) override {}

  private:
    Output& mOutput;
    const bool mClock;
    std::string mFile;
    std::string mSeek;
};

class PacketJsonLines : public PacketList {
  public:
    explicit PacketJsonLines(Output& output) : mOutput(output) {}

    void begin() override {
        mOutput.write(toLine(
                {{"type", "header"}, {"schema_version", kSchemaVersion}, {"digest", "fnv1a64"}}));
    }

    void file(const std::string& path) override {
        mOutput.write(toLine({{"type", "file"}, {"path", path}}));
    }

    void seek(int64_t targetUs) override {
        mOutput.write(toLine({{"type", "seek"}, {"target_us", targetUs}}));
    }

    void packet(const PacketPlayed& packet) override {
        mOutput.write(toLine({{"type", "buffer"},
                              {"track", packet.track},
                              {"time_us", packet.packet.timeUs},
                              {"until_next_us", orNull(packet.untilNextUs)},
                              {"size", packet.packet.bytes.size()},
                              {"sync", packet.packet.isSync},
                              {"digest", digestText(packet.packet)}}));
    }

    void end(const Report& report) override {
        mOutput.write(toLine({{"type", "end"},
                              {"exit_code", static_cast<int>(report.worst())},
                              {"errors", report.errorsJson()},
                              {"warnings", report.warningsJson()}}));
    }

  private:
    Output& mOutput;
};

}  // namespace

std::unique_ptr<PacketList> makePacketTable(Output& output, bool clock) {
    return std::make_unique<PacketTable>(output, clock);
}

std::unique_ptr<PacketList> makePacketCsv(Output& output, bool clock) {
    return std::make_unique<PacketCsv>(output, clock);
}

std::unique_ptr<PacketList> makePacketJsonLines(Output& output) {
    return std::make_unique<PacketJsonLines>(output);
}

}  // namespace ogmprobe
