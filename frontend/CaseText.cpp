// SPDX-License-Identifier: Apache-2.0
#include "frontend/CaseText.h"

#include "case/CaseFile.h"
#include "frontend/CaseChecks.h"
#include "frontend/CaseTree.h"
#include "frontend/GeometryChecks.h"
#include "frontend/TextFile.h"
#include "frontend/TomlReading.h"

#include <sstream>

namespace Frontend {

std::string case_file(const std::string& path)
{
    if (!is_directory(path))
        return path;
    return path + (path.ends_with('/') ? "" : "/") + "case.toml";
}

namespace {

/// A text has no zero bytes; the words of a case file have many.
bool is_binary(const std::string& path, const std::string& bytes, Diagnostics& diagnostics)
{
    if (bytes.find('\0') == std::string::npos)
        return false;
    VRK::ControllerInput record {};
    std::istringstream stream(bytes);
    diagnostics.error({ path },
        VRK::read_case(stream, record) ? "this is a binary case file" : "this is no text",
        "a readable case, such as `vortik show` prints of a binary one");
    return true;
}

void add_files(const CaseTree& read, const std::string& directory, std::vector<std::string>& files)
{
    files.insert(files.end(), read.bodyFiles.begin(), read.bodyFiles.end());
    for (const VRK::RotorData& rotor : read.record.m_vecRotors) {
        for (const std::string& table : rotor.m_vecAftFile)
            files.push_back(path_from(directory, table));
    }
    if (!read.record.m_strRestartFile.empty())
        files.push_back(path_from(directory, read.record.m_strRestartFile));
}

} // namespace

std::optional<VRK::ControllerInput> read_case_text(
    const std::string& path, Diagnostics& diagnostics)
{
    std::vector<std::string> unused;
    return read_case_text(path, diagnostics, unused);
}

std::optional<VRK::ControllerInput> read_case_text(
    const std::string& path, Diagnostics& diagnostics, std::vector<std::string>& files)
{
    const std::string file = case_file(path);
    files.push_back(file);
    const auto text = read_text(file, kReadableCase, diagnostics);
    return text ? case_of_text(*text, file, diagnostics, files) : std::nullopt;
}

std::optional<VRK::ControllerInput> case_of_text(
    const std::string& text, const std::string& file, Diagnostics& diagnostics)
{
    std::vector<std::string> unused;
    return case_of_text(text, file, diagnostics, unused);
}

std::optional<VRK::ControllerInput> case_of_text(const std::string& text, const std::string& file,
    Diagnostics& diagnostics, std::vector<std::string>& files)
{
    if (is_binary(file, text, diagnostics))
        return std::nullopt;
    const auto tree = parse_toml(text, file, diagnostics);
    if (!tree)
        return std::nullopt;
    CaseTree read = read_case_tree(*tree, file, diagnostics);
    check_case(read, directory_around(file), diagnostics);
    check_bodies(read, diagnostics);
    add_files(read, directory_around(file), files);
    if (diagnostics.failed())
        return std::nullopt;
    return std::move(read.record);
}

} // namespace Frontend
