// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Locales.h"

#include "tests/support/Files.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <locale>
#include <string>

namespace Testing {

bool use_comma_locale()
{
    const TemporaryDirectory directory; // the C library keeps what it has loaded
    const std::string command
        = "localedef -i de_DE -f UTF-8 '" + directory.path("de_DE.UTF-8") + "' >/dev/null 2>&1";
    (void)std::system(command.c_str()); // whether it worked shows below
    ::setenv("LOCPATH", directory.path().c_str(), 1);
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr)
        return false;
    std::locale::global(std::locale("de_DE.UTF-8"));
    return std::strcmp(std::localeconv()->decimal_point, ",") == 0;
}

} // namespace Testing
