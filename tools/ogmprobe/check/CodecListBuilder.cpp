// SPDX-License-Identifier: Apache-2.0
#include "check/CodecListBuilder.h"

#include <fmt/core.h>

#include <algorithm>

#include "check/CodecXml.h"

namespace ogmprobe::check {
namespace {

std::string valueOf(const Attributes& attributes, const std::string& name) {
    const auto found = attributes.find(name);
    return found == attributes.end() ? "" : found->second;
}

bool isTrue(const std::string& text) {
    return text == "true" || text == "1" || text == "yes" || text == "y" || text == "on";
}

bool isFalse(const std::string& text) {
    return text == "false" || text == "0" || text == "no" || text == "n" || text == "off";
}

}  // namespace

bool CodecListBuilder::begin(const std::string& element, const Attributes& attributes) {
    if (element == "Encoders") {
        ++mInEncoders;
    } else if (element == "Settings") {
        ++mInSettings;
    } else if (mInSettings > 0) {
        noteSetting(element, attributes);
    } else if (element == "MediaCodec" && mInEncoders == 0) {
        return beginCodec(attributes);
    } else if (mCodec && element == "Type") {
        beginType(valueOf(attributes, "name"));
    } else if (mCodec && element == "Variant") {
        mVariant = valueOf(attributes, "name");
    } else if (mCodec && element == "Feature") {
        noteFeature(attributes);
    } else if (mCodec && mType && element == "Limit") {
        mCodecs[*mCodec].types[*mType].limits.push_back({attributes, mVariant});
    }
    return true;
}

void CodecListBuilder::end(const std::string& element) {
    if (element == "Encoders") {
        --mInEncoders;
    } else if (element == "Settings") {
        --mInSettings;
    } else if (element == "MediaCodec") {
        mCodec.reset();
        mType.reset();
        mVariant.clear();
    } else if (element == "Variant") {
        mVariant.clear();
    }
}

/** An element with `update` adds to the earlier element with the same name. */
bool CodecListBuilder::beginCodec(const Attributes& attributes) {
    const std::string name = valueOf(attributes, "name");
    const auto known = std::find_if(mCodecs.begin(), mCodecs.end(),
                                    [&name](const Codec& codec) { return codec.name == name; });
    const bool isUpdate = isTrue(valueOf(attributes, "update"));
    if (isUpdate && known == mCodecs.end()) {
        return true;
    }
    if (known == mCodecs.end()) {
        mCodecs.push_back({name, attributes, {}});
        mCodec = mCodecs.size() - 1;
    } else {
        mCodec = static_cast<size_t>(known - mCodecs.begin());
        const std::string enabled = valueOf(attributes, "enabled");
        if (!enabled.empty()) {
            known->attributes["enabled"] = enabled;
        }
    }
    if (const std::string mime = valueOf(attributes, "type"); !mime.empty()) {
        beginType(mime);
    }
    return mCodecs.size() <= kMaxDecoders;
}

void CodecListBuilder::beginType(const std::string& mime) {
    std::vector<Type>& types = mCodecs[*mCodec].types;
    const auto known = std::find_if(types.begin(), types.end(),
                                    [&mime](const Type& type) { return type.mime == mime; });
    mType = static_cast<size_t>(known - types.begin());
    if (known == types.end()) {
        types.push_back({mime, {}});
    }
}

void CodecListBuilder::noteSetting(const std::string& element, const Attributes& attributes) {
    std::set<std::string>* enabled = element == "Domain"    ? &mEnabledDomains
                                     : element == "Variant" ? &mEnabledVariants
                                                            : nullptr;
    if (enabled == nullptr) {
        return;
    }
    const std::string name = valueOf(attributes, "name");
    if (isTrue(valueOf(attributes, "enabled"))) {
        enabled->insert(name);
    } else {
        enabled->erase(name);
    }
}

void CodecListBuilder::noteFeature(const Attributes& attributes) {
    if (!isTrue(valueOf(attributes, "required"))) {
        return;
    }
    Codec& codec = mCodecs[*mCodec];
    const std::string name = valueOf(attributes, "name");
    codec.onlySecure |= name == "secure-playback";
    codec.onlyTunneled |= name == "tunneled-playback";
}

/** "slow-cpu": that is enabled; "!slow-cpu": it is not. If there are several, one must hold. */
bool CodecListBuilder::variantApplies(std::string_view variant) const {
    for (std::string_view rest = variant; !rest.empty();) {
        const size_t comma = std::min(rest.find(','), rest.size());
        const std::string_view name = rest.substr(0, comma);
        const bool isNegated = name.starts_with('!');
        const std::string bare(name.substr(isNegated ? 1 : 0));
        if (mEnabledVariants.contains(bare) != isNegated) {
            return true;
        }
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
    return variant.empty();
}

std::string CodecListBuilder::whyUnusable(const Codec& codec) const {
    const std::string domain = valueOf(codec.attributes, "domain");
    const std::string variant = valueOf(codec.attributes, "variant");
    if (isFalse(valueOf(codec.attributes, "enabled"))) {
        return "is not enabled";
    }
    if (!domain.empty() && !mEnabledDomains.contains(domain)) {
        return fmt::format("belongs to the domain {}, which is not enabled", domain);
    }
    if (!variantApplies(variant)) {
        return fmt::format("belongs to the variant {}, which is not enabled", variant);
    }
    return codec.onlySecure     ? "plays protected content only"
           : codec.onlyTunneled ? "plays in tunneled mode only"
                                : "";
}

std::vector<Decoder> CodecListBuilder::decoders() const {
    std::vector<Decoder> decoders;
    for (const Codec& codec : mCodecs) {
        for (const Type& type : codec.types) {
            Decoder decoder{codec.name, type.mime, {}, whyUnusable(codec)};
            for (const Limit& limit : type.limits) {
                if (variantApplies(limit.variant)) {
                    addLimit(limit.attributes, decoder.limits);
                }
            }
            decoders.push_back(std::move(decoder));
        }
    }
    return decoders;
}

}  // namespace ogmprobe::check
