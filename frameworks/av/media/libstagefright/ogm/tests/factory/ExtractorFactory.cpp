// SPDX-License-Identifier: Apache-2.0
#include "ExtractorFactory.h"

#include <dlfcn.h>
#include <media/NdkMediaFormat.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <utility>

#include "Format.h"

namespace android::ogm::test {
namespace {

bool isTaken(const std::filesystem::path& path) {
    return path.filename().string().front() != '.' &&
           path.string().find("extractor.so") != std::string::npos;
}

bool isAcceptable(const ExtractorDef& definition) {
    const auto& uuid = definition.extractor_uuid.b;
    const bool known = definition.def_version == EXTRACTORDEF_VERSION_NDK_V1 ||
                       definition.def_version == EXTRACTORDEF_VERSION_NDK_V2;
    const bool hasUuid =
            std::any_of(std::begin(uuid), std::end(uuid), [](uint8_t byte) { return byte != 0; });
    const bool hasName = definition.extractor_name != nullptr && *definition.extractor_name != '\0';
    return known && hasUuid && hasName;
}

bool haveSameUuid(const ExtractorDef& first, const ExtractorDef& second) {
    return memcmp(first.extractor_uuid.b, second.extractor_uuid.b, sizeof(media_uuid_t)) == 0;
}

std::shared_ptr<void> load(const std::filesystem::path& path) {
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return nullptr;
    }
    return {library, [](void* handle) { dlclose(handle); }};
}

}  // namespace

/** A plug-in's answer to a sniff; frees the sniff's `meta`. */
struct ExtractorFactory::Candidate {
    Candidate() = default;
    Candidate(Candidate&& other) noexcept { swap(other); }
    Candidate& operator=(Candidate&& other) noexcept {
        swap(other);
        return *this;
    }
    ~Candidate() {
        if (meta != nullptr && freeMeta != nullptr) {
            freeMeta(meta);
        }
    }

    void swap(Candidate& other) {
        std::swap(plugin, other.plugin);
        std::swap(creator, other.creator);
        std::swap(confidence, other.confidence);
        std::swap(meta, other.meta);
        std::swap(freeMeta, other.freeMeta);
    }

    const Plugin* plugin = nullptr;
    CreatorFunc creator = nullptr;
    float confidence = 0;
    void* meta = nullptr;
    FreeMetaFunc freeMeta = nullptr;
};

void ExtractorFactory::OpenedExtractor::Free::operator()(CMediaExtractor* table) const {
    table->free(table->data);
    ::free(table);
}

ExtractorFactory::OpenedExtractor::OpenedExtractor(CMediaExtractor* table,
                                                   std::shared_ptr<void> library)
    : mLibrary(std::move(library)),
      mTable(table),
      mTrackCount(table->countTracks(table->data)),
      mName(table->name(table->data)) {
    const Format metrics;
    table->getMetaData(table->data, metrics.get());
}

ExtractorFactory::ExtractorFactory(const std::vector<std::filesystem::path>& folders) {
    for (const std::filesystem::path& folder : folders) {
        registerFolder(folder);
    }
    mPlugins.sort([](const Plugin& a, const Plugin& b) {
        return strcmp(a.definition.extractor_name, b.definition.extractor_name) < 0;
    });
}

void ExtractorFactory::registerFolder(const std::filesystem::path& folder) {
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
        if (isTaken(entry.path())) {
            registerPlugin(entry.path());
        }
    }
}

void ExtractorFactory::registerPlugin(const std::filesystem::path& path) {
    std::shared_ptr<void> library = load(path);
    if (library == nullptr) {
        return;
    }
    const auto entry = reinterpret_cast<GetExtractorDef>(dlsym(library.get(), "GETEXTRACTORDEF"));
    if (entry == nullptr) {
        return;
    }
    const ExtractorDef definition = entry();
    if (!isAcceptable(definition)) {
        return;
    }
    const auto same = std::find_if(mPlugins.begin(), mPlugins.end(), [&](const Plugin& plugin) {
        return haveSameUuid(plugin.definition, definition);
    });
    if (same != mPlugins.end()) {
        if (definition.extractor_version <= same->definition.extractor_version) {
            return;
        }
        mPlugins.erase(same);
    }
    mPlugins.push_back({path, std::move(library), definition});
}

std::vector<std::string> ExtractorFactory::names() const {
    std::vector<std::string> names;
    for (const Plugin& plugin : mPlugins) {
        names.emplace_back(plugin.definition.extractor_name);
    }
    return names;
}

std::vector<std::string> ExtractorFactory::supportedTypes() const {
    std::vector<std::string> types;
    for (const Plugin& plugin : mPlugins) {
        if (plugin.definition.def_version != EXTRACTORDEF_VERSION_NDK_V2) {
            continue;
        }
        for (const char** type = plugin.definition.u.v3.supported_types; *type != nullptr; ++type) {
            types.emplace_back(*type);
        }
    }
    return types;
}

ExtractorFactory::Candidate ExtractorFactory::surest(CDataSource* source) const {
    Candidate best;
    for (const Plugin& plugin : mPlugins) {
        Candidate candidate;
        candidate.plugin = &plugin;
        // Both versions of the definition have the sniff function at the same offset.
        candidate.creator = plugin.definition.u.v2.sniff(source, &candidate.confidence,
                                                         &candidate.meta, &candidate.freeMeta);
        if (candidate.creator == nullptr) {
            // If a plug-in does not take the file, what it wrote is ignored.
            candidate.meta = nullptr;
        } else if (candidate.confidence > best.confidence) {
            best = std::move(candidate);
        }
    }
    return best;
}

std::unique_ptr<ExtractorFactory::OpenedExtractor> ExtractorFactory::open(
        CDataSource* source) const {
    const Candidate winner = surest(source);
    if (winner.creator == nullptr) {
        return nullptr;
    }
    CMediaExtractor* table = winner.creator(source, winner.meta);
    if (table == nullptr) {
        return nullptr;
    }
    return std::make_unique<OpenedExtractor>(table, winner.plugin->library);
}

}  // namespace android::ogm::test
