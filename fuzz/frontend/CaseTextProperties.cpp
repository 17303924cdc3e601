// SPDX-License-Identifier: Apache-2.0
#include "fuzz/frontend/CaseTextProperties.h"

#include "case/CaseFile.h"
#include "frontend/CaseText.h"
#include "frontend/CaseTree.h"
#include "frontend/TreeText.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace CaseTextProperties {

namespace {

using Frontend::Diagnostics;

constexpr const char* kFile = "/no/such/case.toml";

void demand(bool holds, const std::string& what)
{
    if (!holds)
        throw std::logic_error(what);
}

std::string reported(const Diagnostics& diagnostics)
{
    std::ostringstream stream;
    diagnostics.print(stream);
    return stream.str();
}

void check_report(const Diagnostics& diagnostics)
{
    std::istringstream lines(reported(diagnostics));
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        demand(line.starts_with(std::string(kFile) + ':'), "a line without its place: " + line);
        demand(std::none_of(line.begin(), line.end(),
                   [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }),
            "control characters in a message: " + line);
    }
    demand(count == diagnostics.errors() + diagnostics.warnings(), "messages of several lines");
}

std::string bytes_of(const VRK::ControllerInput& record)
{
    std::ostringstream stream;
    demand(VRK::write_case(stream, record), "a good case cannot be written");
    return stream.str();
}

} // namespace

bool check_text(const std::string& text)
{
    Diagnostics diagnostics;
    const auto record = Frontend::case_of_text(text, kFile, diagnostics);
    check_report(diagnostics);
    demand(
        record.has_value() != diagnostics.failed(), "a bad case that is not reported, or is built");
    if (!record)
        return false;

    VRK::ControllerInput built {};
    std::istringstream stream(bytes_of(*record));
    demand(VRK::read_case(stream, built), "a good case cannot be read");
    const std::string shown = Frontend::toml_text(Frontend::show_case_tree(built));
    Diagnostics again;
    const auto back = Frontend::case_of_text(shown, "shown.toml", again);
    demand(back.has_value(), "a shown case has faults:\n" + reported(again) + shown);
    demand(bytes_of(*back) == bytes_of(built), "a shown case builds other bytes:\n" + shown);
    return true;
}

} // namespace CaseTextProperties
