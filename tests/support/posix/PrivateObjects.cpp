// SPDX-License-Identifier: Apache-2.0
#include "tests/support/PrivateObjects.h"

#include "tests/support/Files.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace Testing {

namespace {

constexpr const char* kDirectory = "/dev/shm";
bool g_private = false;

std::string failure(const char* call)
{
    return std::string("no private ") + kDirectory + ": " + call + ": " + std::strerror(errno);
}

// Without root's rights, a user namespace gives them for mounts of our own; we stay who we are.
bool become_mounter()
{
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
        return false;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user << " " << user << " 1";
    std::ofstream("/proc/self/gid_map") << group << " " << group << " 1";
    return ::geteuid() == user;
}

} // namespace

std::string use_private_objects()
{
    if (g_private)
        return "";
    if (::unshare(CLONE_NEWNS) != 0 && !become_mounter())
        return failure("unshare");
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return failure("making the mounts private");
    if (::mount("tmpfs", kDirectory, "tmpfs", 0, "size=64m,mode=1777") != 0)
        return failure("mount");
    g_private = true;
    return "";
}

bool objects_are_private() { return g_private; }

void remove_private_objects()
{
    if (!g_private)
        std::abort(); // these would be the user's
    for (const std::string& name : names_in(kDirectory))
        std::filesystem::remove_all(kDirectory + ("/" + name));
}

std::string private_object_names()
{
    std::string all;
    for (const std::string& name : names_in(kDirectory))
        all += (all.empty() ? "" : " ") + name;
    return all;
}

} // namespace Testing
