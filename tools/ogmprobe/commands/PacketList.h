// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "commands/Report.h"
#include "console/Output.h"
#include "records/Records.h"

namespace ogmprobe {

/** Writes a packet list, line by line. */
class PacketList {
  public:
    virtual ~PacketList() = default;

    virtual void begin() = 0;
    /** The following lines are about this file; called only if there are several. */
    virtual void file(const std::string& path) = 0;
    /** The following packets were read after this seek. */
    virtual void seek(int64_t targetUs) = 0;
    virtual void packet(const PacketPlayed& packet) = 0;
    virtual void end(const Report& report) = 0;
};

/** Returns a list with columns for people; seeks are lines that begin with "#". */
std::unique_ptr<PacketList> makePacketTable(Output& output, bool clock);
/** Returns a list of comma-separated values with a heading. */
std::unique_ptr<PacketList> makePacketCsv(Output& output, bool clock);
/** Returns a list of JSON lines whose "type" is header, seek, buffer or end. */
std::unique_ptr<PacketList> makePacketJsonLines(Output& output);

}  // namespace ogmprobe
