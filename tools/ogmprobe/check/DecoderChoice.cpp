// SPDX-License-Identifier: Apache-2.0
#include "check/DecoderChoice.h"

#include <fmt/format.h>
#include <strings.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "check/StockDecoders.h"
#include "text/NumberText.h"

namespace ogmprobe::check {
namespace {

/** Where a list gives numbers of blocks without their size. */
constexpr Extent kUsualBlock = {16, 16};

std::string numberText(double value) {
    return value < std::numeric_limits<double>::max() ? fmt::format("{:.10g}", value) : "";
}

/** "8000, 11025 to 48000", "at most 2". */
std::string rangesText(const Ranges& ranges) {
    std::vector<std::string> parts;
    for (const Range& range : ranges) {
        if (range.least == range.most) {
            parts.push_back(numberText(range.least));
        } else if (range.least <= 1) {
            parts.push_back("at most " + numberText(range.most));
        } else {
            parts.push_back(
                    fmt::format("{} to {}", numberText(range.least), numberText(range.most)));
        }
    }
    return fmt::format("{}", fmt::join(parts, ", "));
}

/** The end of the ranges that the value is beyond. */
double nearestLimit(const Ranges& ranges, double value) {
    double most = 0;
    double least = std::numeric_limits<double>::max();
    for (const Range& range : ranges) {
        most = std::max(most, range.most);
        least = std::min(least, range.least);
    }
    return value < least ? least : most;
}

/** What a decoder does not declare to do. */
class Complaints {
  public:
    Complaints(const Needs& needs, const Decoder& decoder)
        : mNeeds(needs), mLimits(decoder.limits), mDecoder(decoder.name) {
        judgeSize();
        judgeProfile();
        judgeRates();
        judgeSound();
    }

    std::vector<Reason> take() { return std::move(mReasons); }

  private:
    void complain(const char* id, const std::string& what, double value, const Ranges& ranges) {
        mReasons.push_back(
                reasonOf(id, fmt::format("{}; {} declares {}", what, mDecoder, rangesText(ranges)),
                         value, nearestLimit(ranges, value)));
    }

    void judgeSize();
    void judgeBlocks();
    void judgeProfile();
    void judgeRates();
    void judgeSound();
    double blocks() const;

    const Needs& mNeeds;
    const DecoderLimits& mLimits;
    const std::string& mDecoder;
    std::vector<Reason> mReasons;
};

void Complaints::judgeSize() {
    const int64_t width = mNeeds.width.value_or(0);
    const int64_t height = mNeeds.height.value_or(0);
    if (width <= 0 || height <= 0) {
        return;
    }
    const std::string size = fmt::format("the pictures have {}x{}", width, height);
    const auto& most = mLimits.mostSize;
    const auto& least = mLimits.leastSize;
    const auto& alignment = mLimits.alignment;
    if (most && (width > most->width || height > most->height)) {
        mReasons.push_back(
                reasonOf("size-outside",
                         fmt::format("{}; {} declares at most {}x{}", size, mDecoder, most->width,
                                     most->height),
                         static_cast<double>(width > most->width ? width : height),
                         static_cast<double>(width > most->width ? most->width : most->height)));
    } else if (least && (width < least->width || height < least->height)) {
        mReasons.push_back(
                reasonOf("size-outside",
                         fmt::format("{}; {} declares at least {}x{}", size, mDecoder, least->width,
                                     least->height),
                         static_cast<double>(width < least->width ? width : height),
                         static_cast<double>(width < least->width ? least->width : least->height)));
    } else if (alignment && alignment->width > 0 && alignment->height > 0 &&
               (width % alignment->width != 0 || height % alignment->height != 0)) {
        const bool byWidth = width % alignment->width != 0;
        mReasons.push_back(
                reasonOf("size-outside",
                         fmt::format("{}; {} declares multiples of {}x{}", size, mDecoder,
                                     alignment->width, alignment->height),
                         static_cast<double>(byWidth ? width : height),
                         static_cast<double>(byWidth ? alignment->width : alignment->height)));
    } else {
        judgeBlocks();
    }
}

double Complaints::blocks() const {
    Extent block = mLimits.blockSize.value_or(kUsualBlock);
    if (block.width <= 0 || block.height <= 0) {
        block = kUsualBlock;
    }
    const auto across = (mNeeds.width.value_or(0) + block.width - 1) / block.width;
    const auto down = (mNeeds.height.value_or(0) + block.height - 1) / block.height;
    return static_cast<double>(across) * static_cast<double>(down);
}

void Complaints::judgeBlocks() {
    if (!allows(mLimits.blockCount, blocks())) {
        complain("size-outside",
                 fmt::format("the pictures have {:g} blocks ({}x{})", blocks(), *mNeeds.width,
                             *mNeeds.height),
                 blocks(), mLimits.blockCount);
    }
    const int32_t rate = mNeeds.frameRate.value_or(0);
    const double perSecond = blocks() * rate;
    // Few of them ask nothing of a decoder, though the least may be above.
    if (rate > 0 && !allows(mLimits.blocksPerSecond, perSecond) &&
        perSecond > nearestLimit(mLimits.blocksPerSecond, perSecond)) {
        complain("frame-rate-outside",
                 fmt::format("{} pictures a second of {}x{} are {:.10g} blocks a second", rate,
                             *mNeeds.width, *mNeeds.height, perSecond),
                 perSecond, mLimits.blocksPerSecond);
    }
}

void Complaints::judgeProfile() {
    const std::vector<std::string_view> known = profilesOf(mDecoder);
    if (known.empty() || mNeeds.profile.empty() ||
        std::find(known.begin(), known.end(), mNeeds.profile) != known.end()) {
        return;
    }
    mReasons.push_back(reasonOf("profile-outside",
                                fmt::format("the profile is {}; {} takes {} only", mNeeds.profile,
                                            mDecoder, fmt::join(known, ", "))));
    mReasons.back().subject = mNeeds.profile;
}

void Complaints::judgeRates() {
    const int32_t rate = mNeeds.frameRate.value_or(0);
    if (rate > 0 && !allows(mLimits.frameRate, rate)) {
        complain("frame-rate-outside", fmt::format("{} pictures a second", rate), rate,
                 mLimits.frameRate);
    }
    const double bitrate = mNeeds.bitrate.value_or(0);
    // Less than the least is no burden.
    if (bitrate > 0 && !allows(mLimits.bitrate, bitrate) &&
        bitrate > nearestLimit(mLimits.bitrate, bitrate)) {
        complain("bitrate-outside",
                 fmt::format("{} on average ({:.0f} bits a second)", rateText(bitrate), bitrate),
                 bitrate, mLimits.bitrate);
    }
}

void Complaints::judgeSound() {
    const int32_t rate = mNeeds.sampleRate.value_or(0);
    if (rate > 0 && !allows(mLimits.sampleRate, rate)) {
        complain("sample-rate-outside", fmt::format("{} samples a second", rate), rate,
                 mLimits.sampleRate);
    }
    const int32_t channels = mNeeds.channelCount.value_or(0);
    if (channels > 0 && !allows(mLimits.channelCount, channels)) {
        complain("channels-outside", counted(static_cast<uint64_t>(channels), "channel"), channels,
                 mLimits.channelCount);
    }
}

bool isOf(const Decoder& decoder, const std::string& mime) {
    return strcasecmp(decoder.mime.c_str(), mime.c_str()) == 0;
}

DecoderChoice noDecoder(const Needs& needs, const DecoderList& list) {
    std::string text = fmt::format("no decoder for {} among {}", needs.mime, list.source);
    for (const Decoder& decoder : list.decoders) {
        if (isOf(decoder, needs.mime)) {
            text += fmt::format("; {} {}", decoder.name, decoder.unusable);
        }
    }
    Reason reason = reasonOf("no-decoder", text);
    reason.subject = needs.mime;
    return {"", {std::move(reason)}};
}

bool isBetter(const std::vector<Reason>& reasons, const std::vector<Reason>& than) {
    const auto rank = [](const std::vector<Reason>& list) {
        return std::pair(worstOf(list), list.size());
    };
    return rank(reasons) < rank(than);
}

}  // namespace

DecoderChoice chooseDecoder(const Needs& needs, const DecoderList& list) {
    DecoderChoice best;
    for (const Decoder& decoder : list.decoders) {
        if (!isOf(decoder, needs.mime) || !decoder.unusable.empty()) {
            continue;
        }
        std::vector<Reason> reasons = Complaints(needs, decoder).take();
        if (best.name.empty() || isBetter(reasons, best.reasons)) {
            best = {decoder.name, std::move(reasons)};
        }
    }
    return best.name.empty() ? noDecoder(needs, list) : best;
}

}  // namespace ogmprobe::check
