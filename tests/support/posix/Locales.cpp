// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Locales.h"

#include "tests/support/Files.h"
#include "tests/support/Programs.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <locale>
#include <string>

#include <unistd.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VORTIK_LEAKS_ARE_SOUGHT
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define VORTIK_LEAKS_ARE_SOUGHT
#endif
#ifdef VORTIK_LEAKS_ARE_SOUGHT
#include <sanitizer/lsan_interface.h>
#endif

namespace Testing {

namespace {

/// The C library never frees the list that it makes of LOCPATH.
std::locale locale_named(const std::string& name)
{
#ifdef VORTIK_LEAKS_ARE_SOUGHT
    const __lsan::ScopedDisabler disabler;
#endif
    return std::locale(name);
}

bool make_locale(const std::string& path, const char* charset)
{
    const std::string command
        = std::string("localedef -i de_DE -f ") + charset + " '" + path + "' >/dev/null 2>&1";
    (void)std::system(command.c_str()); // it warns in its status; what counts is what is there
    return file_exists(path + "/LC_NUMERIC");
}

/// Making a locale takes seconds, so it is kept beside the test programs for all of them. It gets
/// its name when it is complete: others may be making it at the same time.
bool is_kept(const std::string& directory, const std::string& name, const char* charset)
{
    namespace fs = std::filesystem;
    if (file_exists(directory + "/" + name))
        return true;
    std::error_code error;
    fs::create_directories(directory, error);
    const std::string unfinished = directory + "/" + name + "-" + std::to_string(::getpid());
    if (!make_locale(unfinished, charset))
        return false;
    fs::rename(unfinished, directory + "/" + name, error);
    fs::remove_all(unfinished, error); // left over if another process was faster
    return file_exists(directory + "/" + name);
}

} // namespace

bool use_comma_locale(const char* charset)
{
    const std::string name = std::string("de_DE.") + charset;
    const TemporaryDirectory fallback; // the C library keeps what it has loaded
    std::string directory = program_beside_this("test-locales");
    if (!is_kept(directory, name, charset)) {
        directory = fallback.path();
        if (!make_locale(fallback.path(name), charset))
            return false;
    }
    ::setenv("LOCPATH", directory.c_str(), 1);
    if (std::setlocale(LC_ALL, name.c_str()) == nullptr)
        return false;
    std::locale::global(locale_named(name));
    return std::strcmp(std::localeconv()->decimal_point, ",") == 0;
}

} // namespace Testing
