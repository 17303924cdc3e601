// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Users.h"

#include "tavrobase/platform/posix/SysCall.h"

#include <array>
#include <cstdlib>
#include <vector>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tavro::Platform {

namespace {

// The public folder that the Filesystem Hierarchy Standard promises on every machine and keeps out
// of the hands of package managers.
constexpr const char* kSharedDocuments = "/usr/local/share";

template <typename Field>
std::optional<std::string> user_entry(uid_t user, Field field)
{
    std::vector<char> buffer(1024);
    for (;;) {
        passwd entry {};
        passwd* found = nullptr;
        const int error = ::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found);
        if (error == EINTR)
            continue;
        if (error == ERANGE) {
            buffer.resize(buffer.size() * 2);
            continue;
        }
        if (error != 0 || found == nullptr)
            return std::nullopt;
        return std::string(found->*field);
    }
}

} // namespace

std::optional<std::string> user_name() { return user_entry(::geteuid(), &passwd::pw_name); }

ErrorNumber host_name(std::string& name)
{
    std::array<char, 1000> buffer {}; // one more than is asked for stays zero
    if (const auto error = Posix::error_of(::gethostname, buffer.data(), buffer.size() - 1))
        return error;
    name = buffer.data();
    return 0;
}

std::optional<std::string> home_directory()
{
    const char* home = std::getenv("HOME");
    if (home != nullptr && *home != '\0')
        return home;
    return user_entry(::getuid(), &passwd::pw_dir);
}

std::optional<std::string> shared_documents_directory()
{
    struct stat facts { };
    if (::stat(kSharedDocuments, &facts) != 0 || !S_ISDIR(facts.st_mode))
        return std::nullopt;
    return kSharedDocuments;
}

} // namespace Tavro::Platform
