// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Surroundings.h"

#include <cstdlib>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace Testing {

void become_ordinary_user()
{
    constexpr uid_t kNobody = 65534;
    if (::geteuid() != 0)
        return;
    if (::setgroups(0, nullptr) != 0 || ::setresgid(kNobody, kNobody, kNobody) != 0
        || ::setresuid(kNobody, kNobody, kNobody) != 0)
        std::abort();
}

bool modes_close_files() { return true; }

bool case_tells_names_apart() { return true; }

bool directories_are_like_files() { return true; }

bool mount_small_disk(const std::string& directory, unsigned long bytes)
{
    if (::unshare(CLONE_NEWNS) != 0)
        return false;
    // Nothing that is mounted from here on is seen by anybody else.
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return false;
    const std::string size = "size=" + std::to_string(bytes) + ",mode=0777";
    return ::mount("tmpfs", directory.c_str(), "tmpfs", 0, size.c_str()) == 0;
}

} // namespace Testing
