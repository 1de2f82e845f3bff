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

#include "text/Json.h"

namespace ogmprobe::check {
namespace {

using nlohmann::ordered_json;

constexpr int kStateVersion = 1;
constexpr const char* kVersionMember = "ogmprobe_check_state";
constexpr int64_t kNsPerSecond = 1'000'000'000;
constexpr int kNewFileRights = 0644;

/** JSON holds UTF-8 only, a path anything. */
std::string hexOf(const std::string& path) {
    std::string text;
    for (const char byte : path) {
        text += fmt::format("{:02x}", static_cast<uint8_t>(byte));
    }
    return text;
}

std::string pathOfHex(const std::string& hex) {
    std::string path;
    for (size_t i = 0; i + 1 < hex.size(); i += 2) {
        path += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    }
    return path;
}

std::string everythingIn(int descriptor) {
    std::string text;
    std::array<char, 65536> bytes;
    ssize_t got = 0;
    while ((got = ::read(descriptor, bytes.data(), bytes.size())) > 0) {
        text.append(bytes.data(), static_cast<size_t>(got));
    }
    return text;
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
    if (flock(mFile.get(), LOCK_EX | LOCK_NB) != 0) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("{} belongs to another run that is still at work", mPath));
    }
}

void TriageState::read(const std::string& circumstances) {
    const std::string text = everythingIn(mFile.get());
    const size_t headingEnd = text.find('\n');
    if (headingEnd == std::string::npos) {
        if (!text.empty() && !text.starts_with(fmt::format("{{\"{}\"", kVersionMember))) {
            throw ProbeError(ExitCode::kFile, fmt::format("{} is no state of a check", mPath));
        }
        if (ftruncate(mFile.get(), 0) == 0) {
            append(toLine({{kVersionMember, kStateVersion}, {"of", circumstances}}));
        }
        return;
    }
    const auto heading = ordered_json::parse(text.substr(0, headingEnd), nullptr, false);
    if (!heading.is_object() || heading.value(kVersionMember, 0) != kStateVersion) {
        throw ProbeError(ExitCode::kFile, fmt::format("{} is no state of a check", mPath));
    }
    if (heading.value("of", "") != circumstances) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("{} is of another list of codecs, another plug-in or another "
                                     "version of this program; name another file for a new run",
                                     mPath));
    }
    size_t begin = headingEnd + 1;
    for (size_t end = 0; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1) {
        take(text.substr(begin, end - begin));
    }
    if (begin < text.size()) {
        // What follows begins a line of its own.
        append("\n");
    }
}

/** A line that was cut off by a kill, and one that a disk has damaged, are no loss but of time. */
void TriageState::take(const std::string& line) {
    try {
        const auto json = ordered_json::parse(line);
        FileIdentity identity{pathOfHex(json.at("path")), json.at("size"), json.at("mtime_ns")};
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
    append(toLine({{"path", hexOf(identity.path)},
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
