// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "check/Decoder.h"

namespace ogmprobe::check {

using Attributes = std::map<std::string, std::string>;

/** Makes decoders from the elements of a list of codecs, in their order. */
class CodecListBuilder {
  public:
    /** Returns false if there are more decoders than any device has. */
    bool begin(const std::string& element, const Attributes& attributes);
    void end(const std::string& element);

    /** To be called after all files: settings apply to earlier elements too. */
    std::vector<Decoder> decoders() const;

  private:
    struct Limit {
        Attributes attributes;
        /** The only variant in which it applies; empty: all. */
        std::string variant;
    };

    struct Type {
        std::string mime;
        std::vector<Limit> limits;
    };

    struct Codec {
        std::string name;
        Attributes attributes;
        std::vector<Type> types;
        bool onlySecure = false;
        bool onlyTunneled = false;
    };

    bool beginCodec(const Attributes& attributes);
    void beginType(const std::string& mime);
    void noteSetting(const std::string& element, const Attributes& attributes);
    void noteFeature(const Attributes& attributes);
    bool variantApplies(std::string_view variant) const;
    std::string whyUnusable(const Codec& codec) const;

    std::vector<Codec> mCodecs;
    std::set<std::string> mEnabledDomains;
    std::set<std::string> mEnabledVariants;
    /** Depths of elements, because a file may be included in the middle of another's. */
    size_t mInEncoders = 0;
    size_t mInSettings = 0;
    /** Indices of the elements that are being read; nothing outside of them. */
    std::optional<size_t> mCodec;
    std::optional<size_t> mType;
    std::string mVariant;
};

/** Adds the values of a <Limit>; ignores unknown names. */
void addLimit(const Attributes& attributes, DecoderLimits& limits);

}  // namespace ogmprobe::check
