// SPDX-License-Identifier: Apache-2.0
#include "frontend/AirfoilFile.h"
#include "frontend/CaseCommands.h"
#include "frontend/ExitStatus.h"
#include "frontend/TextFile.h"

#include <iostream>
#include <optional>

namespace Frontend {

namespace {

struct FoundTable {
    std::vector<std::string> lines;
    std::size_t before = 0;
};

std::optional<FoundTable> find_table(const std::string& path, Diagnostics& diagnostics)
{
    const auto bytes = read_text(path, kAirfoilTable, diagnostics);
    if (!bytes)
        return std::nullopt;
    FoundTable found { airfoil_lines(*bytes) };
    const auto before = lines_before_table(found.lines);
    if (!before) {
        tell_lack_of_table(path, found.lines, diagnostics);
        return std::nullopt;
    }
    found.before = *before;
    return found;
}

std::string lines_text(std::size_t count)
{
    return count == 1 ? "line" : std::to_string(count) + " lines";
}

int failed(const Diagnostics& diagnostics, ExitStatus status)
{
    diagnostics.print(std::cerr);
    return status;
}

} // namespace

int airfoil_check_command(const std::string& path)
{
    Diagnostics diagnostics;
    const auto found = find_table(path, diagnostics);
    if (!found)
        return failed(diagnostics, kBadInput);
    const std::string sizes = check_airfoil_table(path, found->lines, found->before, diagnostics);
    if (diagnostics.failed())
        return failed(diagnostics, kBadInput);
    diagnostics.print(std::cerr);
    std::cout << path << ": good; " << sizes << " (Mach numbers x angles)";
    if (found->before > 0)
        std::cout << "; a run cuts the " << lines_text(found->before) << " before the table";
    std::cout << '\n';
    return kFinished;
}

int airfoil_clean_command(const std::string& path, const std::string& output, bool force)
{
    Diagnostics diagnostics;
    const auto found = find_table(path, diagnostics);
    if (!found)
        return failed(diagnostics, kBadInput);
    if (found->before == 0 && output.empty()) {
        std::cout << path << ": nothing to clean; the table begins at the first line\n";
        return kFinished;
    }
    const std::string directory = directory_of(path);
    const std::string target
        = output.empty() ? directory + '.' + path.substr(directory.size()) : output;
    if (!may_write(target, force, diagnostics, { path }))
        return failed(diagnostics, kBadInput);
    if (!write_bytes(target, table_text(found->lines, found->before), diagnostics))
        return failed(diagnostics, kFailed);
    std::cout << target << ": the table of " << path;
    if (found->before > 0)
        std::cout << " without the " << lines_text(found->before) << " before it";
    std::cout << '\n';
    return kFinished;
}

} // namespace Frontend
