// SPDX-License-Identifier: Apache-2.0
#include "Sandbox.h"

#include <fcntl.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstring>
#include <fstream>
#include <memory>
#include <vector>

#include "ExitCode.h"
#include "Sanitizers.h"

namespace ogmprobe {
namespace {

/** A system call that may be made with any arguments, or where they compare as given. */
struct Allowed {
    int call;
    std::vector<scmp_arg_cmp> arguments;
};

std::vector<Allowed> allowedCalls() {
    const auto process = static_cast<scmp_datum_t>(getpid());
    std::vector<Allowed> calls = {
            // The file and the parent's answers. There is nothing else to read from.
            {SCMP_SYS(read), {}},
            {SCMP_SYS(pread64), {}},
            {SCMP_SYS(close), {}},
            {SCMP_SYS(write), {SCMP_A0_64(SCMP_CMP_LE, kParentDescriptor)}},
            {SCMP_SYS(writev), {SCMP_A0_64(SCMP_CMP_LE, kParentDescriptor)}},
            // What the C library asks before it writes to a standard stream.
            {SCMP_SYS(fstat), {}},
            {SCMP_SYS(newfstatat), {SCMP_A3_64(SCMP_CMP_EQ, AT_EMPTY_PATH)}},
            {SCMP_SYS(ioctl), {SCMP_A1_64(SCMP_CMP_EQ, TCGETS)}},
            // Memory, but no new code.
            {SCMP_SYS(brk), {}},
            {SCMP_SYS(mmap), {SCMP_A2_64(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0)}},
            {SCMP_SYS(mprotect), {SCMP_A2_64(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0)}},
            {SCMP_SYS(mremap), {}},
            {SCMP_SYS(munmap), {}},
            {SCMP_SYS(madvise), {}},
            // Locks, time, randomness for hash tables.
            {SCMP_SYS(futex), {}},
            {SCMP_SYS(sched_yield), {}},
            {SCMP_SYS(clock_gettime), {}},
            {SCMP_SYS(gettimeofday), {}},
            {SCMP_SYS(time), {}},
            {SCMP_SYS(nanosleep), {}},
            {SCMP_SYS(clock_nanosleep), {}},
            {SCMP_SYS(restart_syscall), {}},
            {SCMP_SYS(getrandom), {}},
            // A death of its own, and the way to it.
            {SCMP_SYS(getpid), {}},
            {SCMP_SYS(gettid), {}},
            {SCMP_SYS(tgkill), {SCMP_A0_64(SCMP_CMP_EQ, process)}},
            {SCMP_SYS(rt_sigaction), {}},
            {SCMP_SYS(rt_sigprocmask), {}},
            {SCMP_SYS(rt_sigreturn), {}},
            {SCMP_SYS(sigaltstack), {}},
            {SCMP_SYS(exit), {}},
            {SCMP_SYS(exit_group), {}},
    };
    if (kSanitized) {
        // Sanitizers read /proc for their reports and measure the memory that is in use.
        for (const int call : {SCMP_SYS(openat), SCMP_SYS(open)}) {
            const unsigned flags = call == SCMP_SYS(openat) ? 2 : 1;
            calls.push_back({call, {SCMP_CMP64(flags, SCMP_CMP_MASKED_EQ, O_ACCMODE, O_RDONLY)}});
        }
        for (const int call :
             {SCMP_SYS(readlink), SCMP_SYS(readlinkat), SCMP_SYS(lseek), SCMP_SYS(getrusage),
              SCMP_SYS(getrlimit), SCMP_SYS(prlimit64), SCMP_SYS(prctl), SCMP_SYS(mincore)}) {
            calls.push_back({call, {}});
        }
    }
    return calls;
}

// Returns a negative error number if the kernel refuses.
int loadFilter() {
    struct Release {
        void operator()(void* filter) const { seccomp_release(filter); }
    };
    const std::unique_ptr<void, Release> filter(seccomp_init(SCMP_ACT_TRAP));
    if (filter == nullptr) {
        return -ENOMEM;
    }
    for (const Allowed& allowed : allowedCalls()) {
        const int result = seccomp_rule_add_array(filter.get(), SCMP_ACT_ALLOW, allowed.call,
                                                  static_cast<unsigned>(allowed.arguments.size()),
                                                  allowed.arguments.data());
        if (result != 0) {
            return result;
        }
    }
    return seccomp_load(filter.get());
}

// The address space that is in use, from the kernel's count of pages.
uint64_t mappedBytes() {
    uint64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

void limit(int resource, uint64_t value) {
    const rlimit both = {value, value};
    // A lower limit that is there already stays.
    setrlimit(static_cast<__rlimit_resource>(resource), &both);
}

void limitResources() {
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_CORE, 0);
    // The shadow memory of a sanitizer is larger than any sensible limit, and grows.
    if (!kSanitized) {
        limit(RLIMIT_AS, mappedBytes() + kMemoryLimitBytes);
    }
}

void leadStandardStreamsNowhere() {
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nowhere, STDIN_FILENO);
    dup2(nowhere, STDOUT_FILENO);
    // The text of an assertion would be told twice; a sanitizer's report only stands here.
    if (!kSanitized) {
        dup2(nowhere, STDERR_FILENO);
    }
}

}  // namespace

void detach(int parentProcess, int descriptor) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parentProcess) {
        _exit(static_cast<int>(ExitCode::kDied));
    }
    // They go to the whole process group; the parent decides and takes this process with it.
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        std::signal(number, SIG_IGN);
    }
    leadStandardStreamsNowhere();
    if (descriptor != kParentDescriptor) {
        dup2(descriptor, kParentDescriptor);
    }
    closefrom(kParentDescriptor + 1);
}

std::optional<std::string> enterSandbox() {
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    limitResources();
    const int result = loadFilter();
    return result == 0 ? std::nullopt : std::optional<std::string>(std::strerror(-result));
}

}  // namespace ogmprobe
