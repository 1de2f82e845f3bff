// SPDX-License-Identifier: Apache-2.0
#include "PeakMemory.h"

#include <sys/resource.h>

#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "Player.h"
#include "Source.h"

namespace android::ogm::bench {

namespace {

constexpr int64_t kKiB = 1024;

int64_t peakOfChild(const std::string& path) {
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string command = "'" + self + "' " + kReadOption + " '" + path + "'";
    const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(command.c_str(), "re"), pclose);
    uint64_t buffers = 0;
    long peak = 0;
    if (output == nullptr || fscanf(output.get(), "%" SCNu64 " %ld", &buffers, &peak) != 2 ||
        (buffers == 0) != path.empty()) {
        throw std::runtime_error("cannot measure memory by running " + command);
    }
    return peak * kKiB;
}

}  // namespace

int64_t peakMemoryOfReading(const std::string& path) {
    return peakOfChild(path) - peakOfChild("");
}

void readOnce(const std::string& path) {
    plugin();
    uint64_t buffers = 0;
    if (!path.empty()) {
        FileSource source(path);
        Player player(source);
        player.startTracks();
        player.readInTimeOrder();
        buffers = player.buffers();
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    printf("%" PRIu64 " %ld\n", buffers, usage.ru_maxrss);
}

}  // namespace android::ogm::bench
