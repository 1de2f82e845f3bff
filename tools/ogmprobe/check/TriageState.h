// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>

#include "check/CheckedFile.h"
#include "files/Descriptor.h"

namespace ogmprobe::check {

/** Identifies a file's version when it was checked. */
struct FileIdentity {
    std::string path;
    uint64_t sizeBytes = 0;
    int64_t modifiedNs = 0;

    bool operator<(const FileIdentity& other) const {
        return std::tie(path, sizeBytes, modifiedNs) <
               std::tie(other.path, other.sizeBytes, other.modifiedNs);
    }
};

/** Returns nothing if the path is not a file. */
std::optional<FileIdentity> identityOf(const std::string& path);

/**
 * Stores the results of many files, one line for each file. Lines are only appended, each with a
 * single write, so a killed run loses only the files that it was working on. An incomplete last
 * line is ignored.
 */
class TriageState {
  public:
    /**
     * Opens or creates the file. `circumstances` is what verdicts depend on besides the files; a
     * state with other circumstances is refused. Throws `ProbeError` with `kFile`, also if another
     * run uses the file.
     */
    TriageState(const std::string& path, const std::string& circumstances);

    /** Returns the stored result for this version of the file. */
    const CheckedFile* find(const FileIdentity& file) const;
    /** Throws `ProbeError`. */
    void add(const FileIdentity& identity, const CheckedFile& file);
    size_t size() const { return mKnown.size(); }

  private:
    void open();
    void read(const std::string& circumstances);
    void writeHeading(const std::string& text, const std::string& circumstances) const;
    void requireHeading(const std::string& line, const std::string& circumstances) const;
    void take(const std::string& line);
    void append(const std::string& line) const;

    const std::string mPath;
    Descriptor mFile;
    std::map<FileIdentity, CheckedFile> mKnown;
};

}  // namespace ogmprobe::check
