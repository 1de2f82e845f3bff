// SPDX-License-Identifier: Apache-2.0
#include "check/CodecFiles.h"

#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>

#include "ExitCode.h"
#include "check/CodecXml.h"
#include "check/DecoderJson.h"
#include "files/InputFiles.h"
#include "process/ChildTask.h"
#include "text/NumberText.h"

namespace ogmprobe::check {
namespace {

using nlohmann::ordered_json;

constexpr auto kTimeLimit = std::chrono::seconds(10);
/** A hundred times the size of the longest lists' decoders. */
constexpr uint64_t kMaxAnswerBytes = uint64_t{16} << 20;

[[noreturn]] void refuse(const std::string& sentence) {
    throw ProbeError(ExitCode::kFile, sentence);
}

std::string contentsOf(const std::string& path, const std::string& includedBy) {
    errno = 0;
    std::ifstream file(pathToOpen(path), std::ios::binary);
    std::string text(kMaxXmlBytes + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (!file.is_open() || file.bad() || (file.gcount() == 0 && errno != 0)) {
        const std::string reason = errno != 0 ? std::strerror(errno) : "it cannot be read";
        refuse(includedBy.empty()
                       ? fmt::format("cannot read the list of codecs {}: {}", path, reason)
                       : fmt::format("cannot read {}, which {} includes: {}; copy it from the "
                                     "device too",
                                     path, includedBy, reason));
    }
    text.resize(static_cast<size_t>(file.gcount()));
    if (text.size() > kMaxXmlBytes) {
        refuse(fmt::format("{} is larger than {}: it is no list of codecs", path,
                           sizeText(kMaxXmlBytes)));
    }
    return text;
}

std::string answer(const std::vector<std::string>& paths, const XmlFiles& files) {
    const CodecXml xml = readCodecXml(paths, files);
    auto missing = ordered_json::array();
    for (const MissingXml& file : xml.missing) {
        missing.push_back({{"path", file.path}, {"included_by", file.includedBy}});
    }
    auto decoders = ordered_json::array();
    for (const Decoder& decoder : xml.decoders) {
        decoders.push_back(toJson(decoder));
    }
    return ordered_json({{"error", xml.error},
                         {"missing", std::move(missing)},
                         {"decoders", std::move(decoders)}})
            .dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

ordered_json readConfined(const std::vector<std::string>& paths, const XmlFiles& files) {
    ChildTask task([&] { return answer(paths, files); }, ChildTask::Rights::kSandboxed,
                   kMaxAnswerBytes);
    const auto text = task.waitForAnswer(kTimeLimit);
    if (!text) {
        refuse(fmt::format(
                "cannot read the lists of codecs: the process that reads them ended ({})",
                task.ending()));
    }
    return ordered_json::parse(*text);
}

/** The process that reads hostile XML may request any path; only possible includes are read. */
void addMissing(const ordered_json& missing, XmlFiles& files) {
    for (const auto& file : missing) {
        const auto path = file.at("path").get<std::string>();
        const auto includedBy = file.at("included_by").get<std::string>();
        if (files.size() >= kMaxXmlFiles) {
            refuse(fmt::format("the lists of codecs include more than {} files", kMaxXmlFiles));
        }
        if (files.contains(includedBy) && canInclude(includedBy, path)) {
            files.emplace(path, contentsOf(path, includedBy));
        }
    }
}

std::string sourceText(const std::vector<std::string>& paths, size_t decoders) {
    return fmt::format("{} ({})", fmt::join(paths, ", "), counted(decoders, "decoder"));
}

DecoderList listOf(const std::vector<std::string>& paths, const ordered_json& decoders) {
    DecoderList list;
    for (const auto& decoder : decoders) {
        list.decoders.push_back(decoderOf(decoder));
    }
    if (list.decoders.empty()) {
        refuse(fmt::format("{} and the files included there list no decoder",
                           fmt::join(paths, ", ")));
    }
    list.source = sourceText(paths, list.decoders.size());
    return list;
}

}  // namespace

DecoderList decodersOfFiles(const std::vector<std::string>& paths) {
    XmlFiles files;
    for (const std::string& path : paths) {
        files.emplace(path, contentsOf(path, ""));
    }
    try {
        while (true) {
            const ordered_json json = readConfined(paths, files);
            const auto error = json.at("error").get<std::string>();
            if (!error.empty()) {
                refuse("cannot read the list of codecs " + error);
            }
            const size_t known = files.size();
            addMissing(json.at("missing"), files);
            if (files.size() == known) {
                return listOf(paths, json.at("decoders"));
            }
        }
    } catch (const nlohmann::json::exception& error) {
        refuse(
                fmt::format("cannot read the lists of codecs: the process that reads them returned "
                            "invalid data ({})",
                            error.what()));
    }
}

}  // namespace ogmprobe::check
