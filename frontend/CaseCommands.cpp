// SPDX-License-Identifier: Apache-2.0
#include "frontend/CaseCommands.h"

#include "case/CaseFile.h"
#include "frontend/CasePage.h"
#include "frontend/CaseText.h"
#include "frontend/CaseTree.h"
#include "frontend/ExitStatus.h"
#include "frontend/TextFile.h"
#include "frontend/TreeText.h"
#include "tavrobase/StringUtilities.h"

#include <iostream>
#include <sstream>

namespace Frontend {

namespace {

std::string counted(std::size_t count, const std::string& one, const std::string& many)
{
    return Tavro::formatInteger(static_cast<unsigned long>(count)) + ' '
        + (count == 1 ? one : many);
}

std::string findings(const Diagnostics& diagnostics)
{
    std::string text;
    if (diagnostics.failed())
        text += counted(diagnostics.errors(), "error", "errors");
    if (diagnostics.warnings() > 0)
        text += (text.empty() ? "" : ", ") + counted(diagnostics.warnings(), "warning", "warnings");
    return text;
}

std::string summary(const VRK::ControllerInput& record)
{
    std::size_t triangles = 0;
    for (const VRK::BodyData& body : record.m_vecBodies)
        triangles += body.m_vecFacets.size();
    std::size_t steps = 0;
    for (const std::uint32_t inLayer : record.m_time.m_vecNtCell)
        steps += inLayer;
    return counted(record.m_vecBodies.size(), "body", "bodies") + " of "
        + counted(triangles, "triangle", "triangles") + ", "
        + counted(record.m_vecRotors.size(), "rotor", "rotors") + ", "
        + counted(steps, "time step", "time steps");
}

/// The record, or nothing and all that is wrong on the error stream.
std::optional<VRK::ControllerInput> read_and_tell(
    const std::string& path, Diagnostics& diagnostics, std::vector<std::string>& files)
{
    auto record = read_case_text(path, diagnostics, files);
    diagnostics.print(std::cerr);
    if (!record)
        std::cerr << case_file(path) << ": " << findings(diagnostics) << '\n';
    return record;
}

} // namespace

int check_case_command(const std::string& path)
{
    Diagnostics diagnostics;
    std::vector<std::string> files;
    const auto record = read_and_tell(path, diagnostics, files);
    if (!record)
        return kBadInput;
    const std::string found = findings(diagnostics);
    std::cout << case_file(path) << ": good; " << summary(*record)
              << (found.empty() ? "" : "; " + found) << '\n';
    return kFinished;
}

int list_keys_command()
{
    std::cout << case_page_tables();
    return kFinished;
}

int build_case_command(const std::string& path, const std::string& output, bool force)
{
    Diagnostics diagnostics;
    std::vector<std::string> files;
    const auto record = read_and_tell(path, diagnostics, files);
    if (!record)
        return kBadInput;
    Diagnostics writing;
    std::ostringstream stream;
    if (has_ending(output, ".toml")) // mostly the case itself, given once too often
        writing.error({ output }, "this is the name of a readable case",
            "another ending for the binary one, such as .bin");
    // The one way in which this fails, a completion path that is too long, has been reported above.
    if (writing.failed() || !may_write(output, force, writing, files)
        || !VRK::write_case(stream, *record)) {
        writing.print(std::cerr);
        return kBadInput;
    }
    const std::string bytes = stream.str();
    if (!write_bytes(output, bytes, writing)) {
        writing.print(std::cerr);
        return kFailed;
    }
    std::cout << output << ": " << counted(bytes.size(), "byte", "bytes") << "; "
              << summary(*record) << '\n';
    return kFinished;
}

int show_case_command(const std::string& path, bool asJson)
{
    Diagnostics diagnostics;
    const auto bytes = read_text(path, kBinaryCase, diagnostics);
    if (!bytes) {
        diagnostics.print(std::cerr);
        return kBadInput;
    }
    VRK::ControllerInput record {};
    std::istringstream stream(*bytes);
    if (!VRK::read_case(stream, record)) {
        diagnostics.error({ path },
            has_ending(path, ".toml") ? "this is a readable case already"
                                      : "this is no whole case file",
            "a file that `vortik build` made");
        diagnostics.print(std::cerr);
        return kBadInput;
    }
    std::ostringstream again;
    if (!VRK::write_case(again, record) || again.str() != *bytes)
        diagnostics.warning({ path },
            "building what is shown does not give the same bytes: the file has bytes behind its "
            "last field, or texts and paths that are changed when they are read");
    diagnostics.print(std::cerr);
    const Value tree = show_case_tree(record);
    std::cout << (asJson ? json_text(tree) : toml_text(tree));
    return kFinished;
}

} // namespace Frontend
