// SPDX-License-Identifier: Apache-2.0
#include "plugin/PluginLibrary.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "ExitCode.h"
#include "plugin/PluginCall.h"

namespace ogmprobe {
namespace {

constexpr const char* kEntryPoint = "GETEXTRACTORDEF";
constexpr const char* kFileName = "libogmextractor.so";

std::optional<std::string> whyRefused(const android::ExtractorDef& definition) {
    if (definition.def_version != android::EXTRACTORDEF_VERSION_NDK_V1 &&
        definition.def_version != android::EXTRACTORDEF_VERSION_NDK_V2) {
        return fmt::format("definition version {}", definition.def_version);
    }
    const auto& uuid = definition.extractor_uuid.b;
    if (std::all_of(std::begin(uuid), std::end(uuid), [](uint8_t byte) { return byte == 0; })) {
        return "no UUID";
    }
    if (definition.extractor_name == nullptr || *definition.extractor_name == '\0') {
        return "no name";
    }
    if (definition.def_version == android::EXTRACTORDEF_VERSION_NDK_V2 &&
        definition.u.v3.supported_types == nullptr) {
        return "no list of types";
    }
    return std::nullopt;
}

/** The data that a sniff function passes to the creator, freed right after creation. */
struct SniffMeta {
    ~SniffMeta() {
        if (data != nullptr && freeMeta != nullptr) {
            const PluginCall call(PluginFunction::kFreeMeta);
            freeMeta(data);
        }
    }

    void* data = nullptr;
    android::FreeMetaFunc freeMeta = nullptr;
};

android::CreatorFunc sniff(const android::ExtractorDef& definition, android::CDataSource* source,
                           SniffMeta* meta) {
    float confidence = 0;
    const PluginCall call(PluginFunction::kSniff);
    // Both versions of the definition have the sniff function at the same offset.
    const auto creator = definition.u.v2.sniff(source, &confidence, &meta->data, &meta->freeMeta);
    if (creator == nullptr) {
        // Data of a plug-in that does not recognise the file is ignored.
        meta->data = nullptr;
        return nullptr;
    }
    return confidence > 0 ? creator : nullptr;
}

}  // namespace

void PluginLibrary::Close::operator()(void* handle) const {
    dlclose(handle);
}

PluginLibrary::PluginLibrary(const std::filesystem::path& path) {
    // Without a slash the dynamic linker would search its own folders.
    const std::string absolute = std::filesystem::absolute(path).string();
    mHandle.reset(dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (mHandle == nullptr) {
        throw ProbeError(ExitCode::kFile, fmt::format("cannot load the plug-in: {}", dlerror()));
    }
    const auto getDefinition =
            reinterpret_cast<android::GetExtractorDef>(dlsym(mHandle.get(), kEntryPoint));
    if (getDefinition == nullptr) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("{} is no plug-in: it lacks {}", absolute, kEntryPoint));
    }
    {
        const PluginCall call(PluginFunction::kDefinition);
        mDefinition.emplace(getDefinition());
    }
    if (const auto reason = whyRefused(*mDefinition)) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("the loader refuses {}: {}", absolute, *reason));
    }
}

std::string PluginLibrary::name() const {
    return mDefinition->extractor_name;
}

uint32_t PluginLibrary::version() const {
    return mDefinition->extractor_version;
}

std::string PluginLibrary::uuid() const {
    std::string text;
    for (size_t i = 0; i < std::size(mDefinition->extractor_uuid.b); ++i) {
        const bool dash = i == 4 || i == 6 || i == 8 || i == 10;
        text += fmt::format("{}{:02x}", dash ? "-" : "", mDefinition->extractor_uuid.b[i]);
    }
    return text;
}

std::unique_ptr<Extractor> PluginLibrary::open(android::CDataSource* source) const {
    android::CMediaExtractor* extractor = nullptr;
    {
        SniffMeta meta;
        const android::CreatorFunc create = sniff(*mDefinition, source, &meta);
        if (create == nullptr) {
            throw ProbeError(ExitCode::kNotTaken, fmt::format("not recognised by the {}", name()));
        }
        const PluginCall call(PluginFunction::kCreate);
        extractor = create(source, meta.data);
    }
    if (extractor == nullptr) {
        throw ProbeError(ExitCode::kNotTaken,
                         fmt::format("recognised, but refused by the {}", name()));
    }
    return std::make_unique<Extractor>(extractor);
}

std::optional<std::filesystem::path> PluginLibrary::findBeside(
        const std::filesystem::path& programFolder) {
    const auto lib = programFolder.parent_path() / "lib";
    // In a build tree, and when installed.
    const std::array folders = {lib / "extractors", lib / "ogmprobe" / "device" / "extractors"};
    for (const auto& folder : folders) {
        std::error_code ignored;
        if (std::filesystem::exists(folder / kFileName, ignored)) {
            return folder / kFileName;
        }
    }
    return std::nullopt;
}

}  // namespace ogmprobe
