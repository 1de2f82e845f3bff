// SPDX-License-Identifier: Apache-2.0
#include "commands/PacketList.h"

#include <fmt/core.h>

#include <string>

#include "records/Digest.h"
#include "text/Json.h"
#include "text/TimeText.h"

namespace ogmprobe {
namespace {

std::string digestText(const Packet& packet) {
    return fmt::format("{:016x}", fnv1a64(packet.bytes));
}

class PacketTable : public PacketList {
  public:
    explicit PacketTable(Output& output) : mOutput(output) {}

    void begin() override { line("track", "time", "until next", "size", "sync", "digest"); }

    void seek(int64_t targetUs) override {
        mOutput.write(fmt::format("# seek to {}\n", secondsText(targetUs)));
    }

    void packet(const PacketPlayed& packet) override {
        line(packet.track, secondsText(packet.packet.timeUs), secondsText(packet.untilNextUs),
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
};

class PacketJsonLines : public PacketList {
  public:
    explicit PacketJsonLines(Output& output) : mOutput(output) {}

    void begin() override {
        mOutput.write(toLine(
                {{"type", "header"}, {"schema_version", kSchemaVersion}, {"digest", "fnv1a64"}}));
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

std::unique_ptr<PacketList> makePacketTable(Output& output) {
    return std::make_unique<PacketTable>(output);
}

std::unique_ptr<PacketList> makePacketJsonLines(Output& output) {
    return std::make_unique<PacketJsonLines>(output);
}

}  // namespace ogmprobe
