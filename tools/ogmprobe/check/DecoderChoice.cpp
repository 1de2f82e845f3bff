// SPDX-License-Identifier: Apache-2.0
#include "check/DecoderChoice.h"

#include <fmt/format.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include "check/StockDecoders.h"
#include "text/NumberText.h"

namespace ogmprobe::check {
namespace {

/** The block size if a list has numbers of blocks but no size. */
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

/** The end of a range that is nearest to the value, which none of the ranges holds. */
double nearestLimit(const Ranges& ranges, double value) {
    double nearest = std::numeric_limits<double>::infinity();
    for (const Range& range : ranges) {
        const double limit = value < range.least ? range.least : range.most;
        if (std::abs(limit - value) < std::abs(nearest - value)) {
            nearest = limit;
        }
    }
    return nearest;
}

bool isAboveAll(const Ranges& ranges, double value) {
    return std::all_of(ranges.begin(), ranges.end(),
                       [value](const Range& range) { return value > range.most; });
}

/** The limits of each side of a picture. */
struct SizeRule {
    std::string_view name;
    std::optional<Extent> DecoderLimits::*limit;
    bool (*breaks)(int64_t side, int64_t limit);
};

constexpr std::array kSizeRules = {
        SizeRule{"at most", &DecoderLimits::maxSize,
                 [](int64_t side, int64_t limit) { return side > limit; }},
        SizeRule{"at least", &DecoderLimits::minSize,
                 [](int64_t side, int64_t limit) { return side < limit; }},
        SizeRule{"multiples of", &DecoderLimits::alignment,
                 [](int64_t side, int64_t limit) { return limit > 0 && side % limit != 0; }},
};

/** What the track needs but the decoder does not declare. */
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
    for (const SizeRule& rule : kSizeRules) {
        const auto& limit = mLimits.*rule.limit;
        const bool breaksWidth = limit && rule.breaks(width, limit->width);
        if (breaksWidth || (limit && rule.breaks(height, limit->height))) {
            mReasons.push_back(
                    reasonOf("size-outside",
                             fmt::format("the pictures have {}x{}; {} declares {} {}x{}", width,
                                         height, mDecoder, rule.name, limit->width, limit->height),
                             static_cast<double>(breaksWidth ? width : height),
                             static_cast<double>(breaksWidth ? limit->width : limit->height)));
            return;
        }
    }
    judgeBlocks();
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
    // A low number is never a problem for a decoder, even below the declared minimum.
    if (rate > 0 && !allows(mLimits.blocksPerSecond, perSecond) &&
        isAboveAll(mLimits.blocksPerSecond, perSecond)) {
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
    // Values below the declared minimum are no problem.
    if (bitrate > 0 && !allows(mLimits.bitrate, bitrate) && isAboveAll(mLimits.bitrate, bitrate)) {
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
