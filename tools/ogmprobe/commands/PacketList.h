// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "commands/Report.h"
#include "console/Output.h"
#include "records/Records.h"

namespace ogmprobe {

/** Writes a packet list, a line at a time. */
class PacketList {
  public:
    virtual ~PacketList() = default;

    virtual void begin() = 0;
    /** What follows is of this file; told where there are several. */
    virtual void file(const std::string& path) = 0;
    /** What follows was read after this seek. */
    virtual void seek(int64_t targetUs) = 0;
    virtual void packet(const PacketPlayed& packet) = 0;
    virtual void end(const Report& report) = 0;
};

/** Columns for people; seeks are lines that begin with "#". */
std::unique_ptr<PacketList> makePacketTable(Output& output, bool clock);
/** A heading, then a line of comma-separated values each. */
std::unique_ptr<PacketList> makePacketCsv(Output& output, bool clock);
/** JSON lines, told apart by "type": header, seek, buffer, end. */
std::unique_ptr<PacketList> makePacketJsonLines(Output& output);

}  // namespace ogmprobe
