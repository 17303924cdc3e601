// SPDX-License-Identifier: Apache-2.0
#include "frontend/CaseText.h"

#include "frontend/CaseChecks.h"
#include "frontend/CaseTree.h"
#include "frontend/TextFile.h"
#include "frontend/TomlReading.h"

namespace Frontend {

std::string case_file(const std::string& path)
{
    if (!is_directory(path))
        return path;
    return path + (path.ends_with('/') ? "" : "/") + "case.toml";
}

std::optional<VRK::ControllerInput> read_case_text(
    const std::string& path, Diagnostics& diagnostics)
{
    const std::string file = case_file(path);
    const auto tree = read_toml(file, diagnostics);
    if (!tree)
        return std::nullopt;
    CaseTree read = read_case_tree(*tree, file, diagnostics);
    // What follows would tell of values that were never read.
    if (!diagnostics.failed())
        check_case(read, directory_of(file), diagnostics);
    if (diagnostics.failed())
        return std::nullopt;
    return std::move(read.record);
}

} // namespace Frontend
