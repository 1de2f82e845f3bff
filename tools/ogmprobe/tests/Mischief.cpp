// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "FakeExtractor"

#include "Mischief.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utils/Log.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <vector>

namespace ogmprobe::test {
namespace {

struct Region {
    uint8_t* start;
    size_t size;
};

std::vector<Region> gShared;

void crash(android::CDataSource*) {
    std::raise(SIGSEGV);
}

int descend(int levels) {
    volatile char page[4096];
    page[0] = 1;
    return levels > 0 ? descend(levels - 1) + page[0] : 0;
}

void overflowTheStack(android::CDataSource*) {
    // More levels than fit on any stack.
    descend(1 << 30);
}

void overrunBuffer(android::CDataSource*) {
    volatile char* const bytes = new char[1];
    volatile size_t offset = 1;
    bytes[offset] = 0;
    delete[] bytes;
}

void assertSomething(android::CDataSource*) {
    __android_log_assert("false", LOG_TAG, "CHECK(%s) failed.", "fake");
}

void sleepForever(android::CDataSource*) {
    while (true) {
        std::this_thread::sleep_for(std::chrono::hours(1));
    }
}

void computeForever(android::CDataSource*) {
    std::atomic<uint64_t> count{0};
    while (true) {
        ++count;
    }
}

void readForever(android::CDataSource* source) {
    while (true) {
        char byte = 0;
        source->readAt(source->handle, 0, &byte, 1);
    }
}

/** Never the same reads twice, so that nobody can know whether it will end. */
void wanderForever(android::CDataSource* source) {
    off64_t size = 0;
    source->getSize(source->handle, &size);
    for (uint64_t state = 1;; state = state * 6364136223846793005U + 1442695040888963407U) {
        char byte = 0;
        source->readAt(source->handle, static_cast<off64_t>((state >> 33) % size), &byte, 1);
    }
}

/** Like a byte-by-byte search for a page. */
void searchOnce(android::CDataSource* source) {
    char bytes[4] = {};
    off64_t offset = 0;
    while (source->readAt(source->handle, offset, bytes, sizeof(bytes)) == sizeof(bytes)) {
        ++offset;
    }
}

void readOnce(android::CDataSource* source) {
    char byte = 0;
    source->readAt(source->handle, 1, &byte, 1);
}

void sleepLongerThanProgressWaits(android::CDataSource*) {
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
}

void openSocket(android::CDataSource*) {
    socket(AF_INET, SOCK_STREAM, 0);
}

void openForWriting(android::CDataSource*) {
    open("/dev/null", O_WRONLY);
}

void runProgram(android::CDataSource*) {
    char name[] = "/bin/true";
    char* const arguments[] = {name, nullptr};
    execv(name, arguments);
}

void takeAllMemory(android::CDataSource*) {
    std::vector<std::vector<char>> blocks;
    while (true) {
        // Not touched, because the limit is on address space.
        blocks.emplace_back().reserve(1 << 20);
    }
}

void throwException(android::CDataSource*) {
    throw std::runtime_error("a fake exception");
}

void fillSharedMemory(uint8_t (*next)(uint64_t&)) {
    // The tool only notices the damage if something is left to read; it may have read all so far.
    for (int i = 0; i < 100; ++i) {
        ALOGI("about to write all over memory");
    }
    uint64_t state = 1;
    for (const Region& region : gShared) {
        for (size_t i = 0; i < region.size; ++i) {
            region.start[i] = next(state);
        }
    }
}

void scribbleOnes(android::CDataSource*) {
    fillSharedMemory([](uint64_t&) -> uint8_t { return 0xff; });
}

void scribbleNoise(android::CDataSource*) {
    fillSharedMemory([](uint64_t& state) -> uint8_t {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return static_cast<uint8_t>(state);
    });
}

void scribbleAndSleep(android::CDataSource* source) {
    scribbleOnes(source);
    sleepForever(source);
}

void closeEverything(android::CDataSource* source) {
    for (int descriptor = 0; descriptor < 64; ++descriptor) {
        close(descriptor);
    }
    sleepForever(source);
}

const std::map<std::string, void (*)(android::CDataSource*)> kMischief = {
        {"crash", crash},
        {"overflow", overflowTheStack},
        {"overrun", overrunBuffer},
        {"abort", [](android::CDataSource*) { std::abort(); }},
        {"assert", assertSomething},
        {"throw", throwException},
        {"exit", [](android::CDataSource*) { std::exit(7); }},
        {"kill", [](android::CDataSource*) { std::raise(SIGKILL); }},
        {"hang", sleepForever},
        {"compute", computeForever},
        {"spin", readForever},
        {"wander", wanderForever},
        {"search", searchOnce},
        {"read once", readOnce},
        {"nap", sleepLongerThanProgressWaits},
        {"socket", openSocket},
        {"write", openForWriting},
        {"execute", runProgram},
        {"allocate", takeAllMemory},
        {"scribble", scribbleOnes},
        {"scribble noise", scribbleNoise},
        {"scribble and hang", scribbleAndSleep},
        {"close", closeEverything},
};

}  // namespace

void misbehave(const std::string& what, android::CDataSource* source) {
    const std::string assertion = "assert ";
    if (what.rfind(assertion, 0) == 0) {
        __android_log_assert("false", LOG_TAG, "%s", what.c_str() + assertion.size());
    }
    const auto mischief = kMischief.find(what);
    if (mischief != kMischief.end()) {
        mischief->second(source);
    }
}

void lookForSharedMemory() {
    gShared.clear();
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        std::istringstream words(line);
        uintptr_t start = 0;
        uintptr_t end = 0;
        char dash = 0;
        std::string rights;
        words >> std::hex >> start >> dash >> end >> rights;
        if (rights == "rw-s") {
            gShared.push_back({reinterpret_cast<uint8_t*>(start), end - start});
        }
    }
}

}  // namespace ogmprobe::test
