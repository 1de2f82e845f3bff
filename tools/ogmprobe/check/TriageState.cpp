// SPDX-License-Identifier: Apache-2.0
#include "check/TriageState.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>

#include "text/Hex.h"
#include "text/Json.h"

namespace ogmprobe::check {
namespace {

using nlohmann::ordered_json;

constexpr int kStateVersion = 1;
constexpr const char* kVersionMember = "ogmprobe_check_state";
constexpr int64_t kNsPerSecond = 1'000'000'000;
constexpr int kNewFileRights = 0644;

/** JSON allows only UTF-8, but a path may have any bytes. */
std::string hexOfPath(const std::string& path) {
    return hexText({reinterpret_cast<const uint8_t*>(path.data()), path.size()});
}

std::string pathOfHex(const std::string& hex) {
    std::string path;
    for (size_t i = 0; i + 1 < hex.size(); i += 2) {
        path += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    }
    return path;
}

/** Nothing if the line cannot be read. */
std::optional<std::string> everythingIn(int descriptor) {
    std::string text;
    std::array<char, 65536> bytes;
    while (true) {
        const ssize_t got = ::read(descriptor, bytes.data(), bytes.size());
        if (got == 0) {
            return text;
        }
        if (got > 0) {
            text.append(bytes.data(), static_cast<size_t>(got));
        } else if (errno != EINTR) {
            return std::nullopt;
        }
    }
}

bool isRegularFile(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

std::optional<FileIdentity> identityOf(const std::string& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return FileIdentity{path, static_cast<uint64_t>(status.st_size),
                        status.st_mtim.tv_sec * kNsPerSecond + status.st_mtim.tv_nsec};
}

TriageState::TriageState(const std::string& path, const std::string& circumstances) : mPath(path) {
    open();
    read(circumstances);
}

void TriageState::open() {
    mFile = Descriptor(
            ::open(mPath.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, kNewFileRights));
    if (mFile.get() < 0) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("cannot open {}: {}", mPath, std::strerror(errno)));
    }
    // Opening a pipe would block, and a device stores nothing.
    if (!isRegularFile(mFile.get())) {
        throw ProbeError(ExitCode::kFile, fmt::format("{} is no file to keep a state in", mPath));
    }
    if (flock(mFile.get(), LOCK_EX | LOCK_NB) != 0) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("{} belongs to another run that is still at work", mPath));
    }
}

void TriageState::read(const std::string& circumstances) {
    const std::optional<std::string> content = everythingIn(mFile.get());
    if (!content) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("cannot read {}: {}", mPath, std::strerror(errno)));
    }
    const std::string& text = *content;
    const size_t headingEnd = text.find('\n');
    if (headingEnd == std::string::npos) {
        writeHeading(text, circumstances);
        return;
    }
    requireHeading(text.substr(0, headingEnd), circumstances);
    size_t begin = headingEnd + 1;
    for (size_t end = 0; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1) {
        take(text.substr(begin, end - begin));
    }
    if (begin < text.size()) {
        // What follows begins on a new line.
        append("\n");
    }
}

/** For a new file, or if the heading was cut off. */
void TriageState::writeHeading(const std::string& text, const std::string& circumstances) const {
    if (!text.empty() && !text.starts_with(fmt::format("{{\"{}\"", kVersionMember))) {
        throw ProbeError(ExitCode::kFile, fmt::format("{} is no state of a check", mPath));
    }
    if (ftruncate(mFile.get(), 0) != 0) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("cannot write {}: {}", mPath, std::strerror(errno)));
    }
    append(toLine({{kVersionMember, kStateVersion}, {"of", circumstances}}));
}

void TriageState::requireHeading(const std::string& line, const std::string& circumstances) const {
    const auto heading = ordered_json::parse(line, nullptr, false);
    if (!heading.is_object() || heading.value(kVersionMember, ordered_json()) != kStateVersion) {
        throw ProbeError(ExitCode::kFile, fmt::format("{} is no state of a check", mPath));
    }
    if (heading.value("of", ordered_json()) != circumstances) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("{} is of another list of codecs, another plug-in or another "
                                     "version of this program; name another file for a new run",
                                     mPath));
    }
}

/** Ignores lines that a kill has cut off or a disk has damaged: their files are checked again. */
void TriageState::take(const std::string& line) {
    try {
        const auto json = ordered_json::parse(line);
        FileIdentity identity{pathOfHex(json.at("path").get<std::string>()),
                              json.at("size").get<uint64_t>(), json.at("mtime_ns").get<int64_t>()};
        CheckedFile file = checkedFileOf(json.at("result"));
        file.path = identity.path;
        mKnown.insert_or_assign(std::move(identity), std::move(file));
    } catch (const std::exception&) {
        return;
    }
}

const CheckedFile* TriageState::find(const FileIdentity& file) const {
    const auto known = mKnown.find(file);
    return known == mKnown.end() ? nullptr : &known->second;
}

void TriageState::add(const FileIdentity& identity, const CheckedFile& file) {
    append(toLine({{"path", hexOfPath(identity.path)},
                   {"size", identity.sizeBytes},
                   {"mtime_ns", identity.modifiedNs},
                   {"result", toJson(file)}}));
}

void TriageState::append(const std::string& line) const {
    const ssize_t written = ::write(mFile.get(), line.data(), line.size());
    if (written != static_cast<ssize_t>(line.size())) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("cannot write {}: {}", mPath,
                                     written < 0 ? std::strerror(errno) : "the disk is full"));
    }
}

}  // namespace ogmprobe::check
