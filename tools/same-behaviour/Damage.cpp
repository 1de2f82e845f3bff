// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <string_view>

#include "FileMaker.h"

namespace android::ogm::trace {

namespace {

constexpr std::string_view kCapturePattern = "OggS";

struct Field {
    size_t offset;
    size_t width;
};

/** Offsets and sizes of the fields of a page header. */
constexpr Field kFields[] = {
        {0, 4},            // capture pattern
        {4, 1},            // version
        {5, 1},            // flags
        {6, 8},            // granule position
        {14, 4},           // serial number
        {18, 4},           // sequence number
        {26, 1},           // number of segments
        {27, 1},           // first lacing value
        {28, 1}, {35, 8},  // packet, after a table of few segments
};

size_t anyPage(Random* random, const Bytes& file) {
    const auto from = file.begin() + static_cast<ptrdiff_t>(random->below(file.size()));
    auto found = std::search(from, file.end(), kCapturePattern.begin(), kCapturePattern.end());
    if (found == file.end()) {
        found = std::search(file.begin(), file.end(), kCapturePattern.begin(),
                            kCapturePattern.end());
    }
    return found == file.end() ? random->below(file.size())
                               : static_cast<size_t>(found - file.begin());
}

void changeField(Random* random, Bytes* file) {
    const Field& field = random->oneOf(kFields);
    const size_t begin = anyPage(random, *file) + field.offset;
    const size_t changed = random->below(field.width);
    const bool all = random->oneIn(3);
    const uint8_t value = random->oneIn(3) ? (random->oneIn(2) ? 0 : 0xFF) : random->byte();
    for (size_t i = all ? 0 : changed; i < (all ? field.width : changed + 1); ++i) {
        if (begin + i < file->size()) {
            (*file)[begin + i] = value;
        }
    }
}

void overwrite(Random* random, Bytes* file) {
    for (size_t i = random->between(1, 20); i > 0; --i) {
        (*file)[random->below(file->size())] = random->byte();
    }
}

void leaveOut(Random* random, Bytes* file) {
    const size_t begin = random->oneIn(2) ? anyPage(random, *file) : random->below(file->size());
    const size_t count = std::min(random->between(1, 2000), file->size() - begin);
    const auto at = file->begin() + static_cast<ptrdiff_t>(begin);
    file->erase(at, at + static_cast<ptrdiff_t>(count));
}

void putIn(Random* random, Bytes* file) {
    const size_t begin = random->oneIn(2) ? anyPage(random, *file) : random->below(file->size());
    Bytes junk(random->between(1, 600));
    std::generate(junk.begin(), junk.end(), [random] { return random->byte(); });
    if (random->oneIn(3)) {
        junk.assign(kCapturePattern.begin(), kCapturePattern.end());
    }
    file->insert(file->begin() + static_cast<ptrdiff_t>(begin), junk.begin(), junk.end());
}

void repeat(Random* random, Bytes* file) {
    const size_t begin = anyPage(random, *file);
    const Bytes part = test::head(test::tail(*file, begin), random->between(27, 6000));
    const size_t to = anyPage(random, *file);
    file->insert(file->begin() + static_cast<ptrdiff_t>(to), part.begin(), part.end());
}

void damageOnce(Random* random, Bytes* file) {
    constexpr void (*kWays[])(Random*, Bytes*) = {changeField, changeField, changeField, overwrite,
                                                  leaveOut,    putIn,       repeat};
    if (!file->empty()) {
        random->oneOf(kWays)(random, file);
    }
}

}  // namespace

Bytes damagedFile(Random* random, Bytes file) {
    for (size_t i = random->between(1, random->oneIn(3) ? 12 : 2); i > 0; --i) {
        damageOnce(random, &file);
    }
    if (random->oneIn(6)) {
        file.resize(random->below(file.size() + 1));
    }
    return file;
}

}  // namespace android::ogm::trace
