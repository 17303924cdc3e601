// SPDX-License-Identifier: Apache-2.0
#include "tests/support/Locales.h"

#include <clocale>
#include <cstring>
#include <locale>
#include <string>

namespace Testing {

namespace {

/// This standard library has no locales but "C", so the part that numbers need is made here.
class CommaForm : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

} // namespace

bool use_comma_locale(const char*)
{
    if (std::setlocale(LC_ALL, "German_Germany.1252") == nullptr)
        return false;
    const std::locale streams(std::locale::classic(), new CommaForm);
    std::locale::global(streams); // has no name, so the C library keeps what it was given
    return std::strcmp(std::localeconv()->decimal_point, ",") == 0;
}

} // namespace Testing
