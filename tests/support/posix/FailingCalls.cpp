// SPDX-License-Identifier: Apache-2.0
#include "tests/support/FailingCalls.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>

namespace Testing {

namespace {

sock_filter load(std::size_t offset)
{
    return { BPF_LD | BPF_W | BPF_ABS, 0, 0, static_cast<unsigned>(offset) };
}

sock_filter skip_unless_equal(unsigned value, unsigned char count)
{
    return { BPF_JMP | BPF_JEQ | BPF_K, 0, count, value };
}

sock_filter answer(unsigned verdict) { return { BPF_RET | BPF_K, 0, 0, verdict }; }

} // namespace

bool fail_system_call(long number, int error, int argument, unsigned value)
{
    // With no argument asked for, the number is compared twice.
    const std::size_t place = argument < 0
        ? offsetof(seccomp_data, nr)
        : offsetof(seccomp_data, args) + static_cast<std::size_t>(argument) * sizeof(__u64);
    const auto call = static_cast<unsigned>(number);
    std::array<sock_filter, 6> program {
        load(offsetof(seccomp_data, nr)),
        skip_unless_equal(call, 3),
        load(place),
        skip_unless_equal(argument < 0 ? call : value, 1),
        answer(SECCOMP_RET_ERRNO | static_cast<unsigned>(error)),
        answer(SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter { program.size(), program.data() };
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0
        && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

bool fail_reading(int error) { return fail_system_call(SYS_read, error); }

bool fail_flushing(int error) { return fail_system_call(SYS_fsync, error); }

bool limit_file_size(std::size_t bytes)
{
    rlimit limit {};
    if (::getrlimit(RLIMIT_FSIZE, &limit) != 0)
        return false;
    (void)std::signal(SIGXFSZ, SIG_IGN); // a write is to fail instead; nothing was set before
    limit.rlim_cur = bytes;
    return ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

bool fail_new_threads()
{
    constexpr unsigned kFlagsOfAThread = CLONE_VM | CLONE_FS | CLONE_FILES | CLONE_SIGHAND
        | CLONE_THREAD | CLONE_SYSVSEM | CLONE_SETTLS | CLONE_PARENT_SETTID | CLONE_CHILD_CLEARTID;
    return fail_system_call(SYS_clone3, EAGAIN)
        && fail_system_call(SYS_clone, EAGAIN, 0, kFlagsOfAThread);
}

} // namespace Testing
