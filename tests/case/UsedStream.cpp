// SPDX-License-Identifier: Apache-2.0
#include "tests/case/UsedStream.h"

#include "tests/support/Isolated.h"
#include "tests/support/Locales.h"

#include <iomanip>
#include <iostream>
#include <locale>
#include <sstream>

namespace Testing {

namespace {

/// Needs no locale of the machine.
class Comma : public std::numpunct<char> {
protected:
    [[nodiscard]] char do_decimal_point() const override { return ','; }
    [[nodiscard]] char do_thousands_sep() const override { return '.'; }
    [[nodiscard]] std::string do_grouping() const override { return "\3"; }
};

} // namespace

std::string formatted_on_used_stream(const std::function<void(std::ostream&)>& format)
{
    std::ostringstream card;
    (void)card.imbue(std::locale(std::locale::classic(), new Comma)); // the locale owns the facet
    card << std::hex << std::showbase << std::showpos << std::showpoint << std::uppercase
         << std::boolalpha << std::scientific << std::internal << std::setprecision(2)
         << std::setfill('*') << std::setw(20);
    format(card);
    return card.str();
}

std::optional<std::string> formatted_under_comma_locale(
    const std::function<void(std::ostream&)>& format)
{
    const auto outcome = run_isolated([&] {
        if (!use_comma_locale()) {
            std::cout << "skip";
            return;
        }
        std::ostringstream card;
        format(card);
        std::cout << card.str();
    });
    if (outcome.out == "skip")
        return std::nullopt;
    return outcome.out;
}

} // namespace Testing
