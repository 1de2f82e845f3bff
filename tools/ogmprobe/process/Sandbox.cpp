// SPDX-License-Identifier: Apache-2.0
#include "process/Sandbox.h"

#include <fcntl.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <vector>

#include "ExitCode.h"
#include "process/Sanitizers.h"

namespace ogmprobe {
namespace {

/** Allowed whatever the arguments are. */
constexpr std::array kAllowed = {
        // The file and the parent's answers. Nothing else is open.
        SCMP_SYS(pread64), SCMP_SYS(read), SCMP_SYS(close), SCMP_SYS(fstat),
        // Memory.
        SCMP_SYS(brk), SCMP_SYS(mremap), SCMP_SYS(munmap), SCMP_SYS(madvise),
        // Locks, time, randomness for hash tables.
        SCMP_SYS(futex), SCMP_SYS(sched_yield), SCMP_SYS(clock_gettime), SCMP_SYS(gettimeofday),
        SCMP_SYS(time), SCMP_SYS(nanosleep), SCMP_SYS(clock_nanosleep), SCMP_SYS(restart_syscall),
        SCMP_SYS(getrandom),
        // Ending the process.
        SCMP_SYS(getpid), SCMP_SYS(gettid), SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask),
        SCMP_SYS(rt_sigreturn), SCMP_SYS(sigaltstack), SCMP_SYS(exit), SCMP_SYS(exit_group)};

/**
 * Sanitizers read /proc for their reports, write into a pipe to find out whether memory can be
 * read, and ask for the bounds of the stack and how much memory is in use.
 */
constexpr std::array kAllowedToSanitizers = {SCMP_SYS(stat),      SCMP_SYS(newfstatat),
                                             SCMP_SYS(access),    SCMP_SYS(faccessat),
                                             SCMP_SYS(readlink),  SCMP_SYS(readlinkat),
                                             SCMP_SYS(lseek),     SCMP_SYS(pipe),
                                             SCMP_SYS(pipe2),     SCMP_SYS(write),
                                             SCMP_SYS(getrusage), SCMP_SYS(getrlimit),
                                             SCMP_SYS(prlimit64), SCMP_SYS(prctl),
                                             SCMP_SYS(mincore),   SCMP_SYS(sched_getaffinity)};

/** They try to run a program that finds names of functions, but work without it. */
constexpr std::array kDeniedToSanitizers = {SCMP_SYS(fork), SCMP_SYS(vfork), SCMP_SYS(clone)};

/** Allowed if an argument has a certain value in the bits of a mask. */
struct AllowedIf {
    int call;
    unsigned argument;
    scmp_datum_t mask;
    scmp_datum_t value;
};

constexpr scmp_datum_t kWholeValue = ~scmp_datum_t{0};

std::vector<AllowedIf> conditionallyAllowed() {
    std::vector<AllowedIf> calls = {
            // The C library's query before it writes to a standard stream.
            {SCMP_SYS(newfstatat), 3, kWholeValue, AT_EMPTY_PATH},
            {SCMP_SYS(ioctl), 1, kWholeValue, TCGETS},
            // No new code.
            {SCMP_SYS(mmap), 2, PROT_EXEC, 0},
            {SCMP_SYS(mprotect), 2, PROT_EXEC, 0},
            // Signals to itself: an abort is one.
            {SCMP_SYS(tgkill), 0, kWholeValue, static_cast<scmp_datum_t>(getpid())},
    };
    for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO, kParentDescriptor}) {
        calls.push_back({SCMP_SYS(write), 0, kWholeValue, static_cast<scmp_datum_t>(descriptor)});
        calls.push_back({SCMP_SYS(writev), 0, kWholeValue, static_cast<scmp_datum_t>(descriptor)});
    }
    if (kSanitized) {
        calls.push_back({SCMP_SYS(open), 1, O_ACCMODE, O_RDONLY});
        calls.push_back({SCMP_SYS(openat), 2, O_ACCMODE, O_RDONLY});
    }
    return calls;
}

/** Collects rules; keeps the first error, a negative number. */
class Filter {
  public:
    Filter() : mContext(seccomp_init(SCMP_ACT_TRAP)) {
        if (mContext == nullptr) {
            mError = -ENOMEM;
        }
    }
    ~Filter() { seccomp_release(mContext); }

    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    void allow(int call) { add(SCMP_ACT_ALLOW, call, 0, nullptr); }
    /** Makes the call fail. */
    void deny(int call) { add(SCMP_ACT_ERRNO(EPERM), call, 0, nullptr); }
    void allow(const AllowedIf& rule) {
        const scmp_arg_cmp comparison = {rule.argument, SCMP_CMP_MASKED_EQ, rule.mask, rule.value};
        add(SCMP_ACT_ALLOW, rule.call, 1, &comparison);
    }
    int load() { return mError != 0 ? mError : seccomp_load(mContext); }

  private:
    void add(uint32_t action, int call, unsigned count, const scmp_arg_cmp* comparisons) {
        if (mError == 0) {
            mError = seccomp_rule_add_array(mContext, action, call, count, comparisons);
        }
    }

    scmp_filter_ctx mContext;
    int mError = 0;
};

// Returns a negative error number if the kernel refuses.
int loadFilter() {
    Filter filter;
    for (const int call : kAllowed) {
        filter.allow(call);
    }
    if (kSanitized) {
        for (const int call : kAllowedToSanitizers) {
            filter.allow(call);
        }
        for (const int call : kDeniedToSanitizers) {
            filter.deny(call);
        }
    }
    for (const AllowedIf& rule : conditionallyAllowed()) {
        filter.allow(rule);
    }
    return filter.load();
}

// The address space that is in use, from the kernel's count of pages.
uint64_t mappedBytes() {
    uint64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

void limit(int resource, uint64_t value) {
    const rlimit both = {value, value};
    // An existing lower limit stays.
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
    // The text of an assertion would appear twice; a sanitizer's report appears only here.
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
