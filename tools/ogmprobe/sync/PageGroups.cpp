// SPDX-License-Identifier: Apache-2.0
#include "sync/PageGroups.h"

#include <utility>

#include "sync/UnitLength.h"

namespace ogmprobe {
namespace {

/** No writer reaches a larger position; sums with lengths cannot overflow. */
constexpr uint64_t kMaxGranule = uint64_t{1} << 62;

/** For each piece of the stream the page on which its packet ends; nothing if it does not. */
std::vector<std::optional<uint32_t>> endPages(const OggFile& file, const StreamPackets& packets) {
    std::vector<std::optional<uint32_t>> pages(packets.pieces.size());
    for (const FilePacket& packet : packets.packets) {
        const OggPiece& last = file.pieces()[packets.pieces[packet.endPiece - 1]];
        for (size_t i = packet.firstPiece; i < packet.endPiece && last.endsPacket; ++i) {
            pages[i] = last.page;
        }
    }
    return pages;
}

class Grouping {
  public:
    Grouping(const OggFile& file, const StreamAccount& account, const StreamHeader& header)
        : mFile(file),
          mAccount(account),
          mHeader(header),
          mEndPages(endPages(file, account.packets)) {}

    std::vector<PageGroup> groups(const OggStream& stream) {
        mSequence = mFile.pages()[*stream.announcement].sequence;
        for (const size_t index : stream.dataPages) {
            addPage(index);
        }
        return std::move(mGroups);
    }

  private:
    void addPage(size_t index) {
        const OggPage& page = mFile.pages()[index];
        // If all pages have the same number, the numbers do not show missing pages.
        mIsGap = mIsGap || page.sequence > uint64_t{mSequence} + 1;
        mSequence = page.sequence;
        if (page.packets == 0 || page.granule > kMaxGranule) {
            return;
        }
        PageGroup group;
        group.granule = static_cast<int64_t>(page.granule);
        takeUnitsUpTo(index, group);
        if (group.units.empty()) {
            return;
        }
        group.isFirst = mGroups.empty() && !mIsGap;
        group.follows = !mGroups.empty() && !mIsGap;
        mGroups.push_back(std::move(group));
        mIsGap = false;
    }

    void takeUnitsUpTo(size_t page, PageGroup& group) {
        for (; mNext < mAccount.units.size(); ++mNext) {
            const FileUnit& unit = mAccount.units[mNext];
            const auto endPage = mEndPages[unit.lastPiece];
            if (endPage && *endPage > page) {
                return;
            }
            if (endPage && !unit.isComment) {
                group.units.push_back({mNext, lengthOf(unit, mAccount.kind, mHeader)});
            }
        }
    }

    const OggFile& mFile;
    const StreamAccount& mAccount;
    const StreamHeader& mHeader;
    const std::vector<std::optional<uint32_t>> mEndPages;
    std::vector<PageGroup> mGroups;
    size_t mNext = 0;
    uint32_t mSequence = 0;
    /** Whether pages are missing since the last group. */
    bool mIsGap = false;
};

}  // namespace

std::vector<PageGroup> pageGroupsOf(const OggFile& file, const StreamAccount& account) {
    const auto stream = file.streams().find(account.ledger.serial);
    const StreamHeader* header = file.headerOf(account.ledger.serial);
    if (stream == file.streams().end() || header == nullptr) {
        return {};
    }
    return Grouping(file, account, *header).groups(stream->second);
}

}  // namespace ogmprobe
