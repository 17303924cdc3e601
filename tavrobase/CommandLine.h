// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/FilePath.h"

#include <map>
#include <string>
#include <vector>

namespace Tavro {

/// The program's command line, parsed once at start-up and asked by name from anywhere.
///
/// Files come first; options follow, "-name words..." or "-name=value" with any number of dashes,
/// the first value of a name counting; what stands behind "--" is files again.
///
/// Threads: `SetParameters` runs before any other use; afterwards the state is only read.
class CommandLine {
public:
    CommandLine() = default;
    ~CommandLine() = default;
    /// A copy would be a second name for the same state: both end the process.
    CommandLine(const CommandLine& other);
    CommandLine& operator=(const CommandLine& other);

    /// Errors: `std::out_of_range` from a file argument that collapses to nothing.
    static void SetParameters(int argc, const char* const* argv);
    [[nodiscard]] static bool Initialized();

    /// The program's own path as it was started.
    [[nodiscard]] static FilePath GetProgramPath();

    /// Whether the parameter was given, with or without a value.
    [[nodiscard]] static bool GetArgument(std::string name);

    /// Typed queries. False, and the reference left alone, if the parameter is missing, is a bare
    /// flag or does not begin like the type; the first two are reported at debug level 1 (never for
    /// the number "debug", which the reporting itself asks for). Numbers have the forms of `strtol`
    /// in base 0, `strtof` and `strtod` with a decimal point in every locale; what follows them is
    /// not looked at. An `int` beyond its range becomes the nearest one.
    [[nodiscard]] static bool GetArgument(std::string name, int& value);
    [[nodiscard]] static bool GetArgument(std::string name, float& value);
    [[nodiscard]] static bool GetArgument(std::string name, double& value);
    [[nodiscard]] static bool GetArgument(std::string name, std::string& value);
    /// "true", "t", "yes", "y", "false", "f", "no", "n" in any case, or a number that is zero or
    /// not.
    [[nodiscard]] static bool GetArgument(std::string name, bool& value);
    /// Appends the words of the value, split at blanks and at commas.
    [[nodiscard]] static bool GetArgument(std::string name, std::vector<std::string>& values);

    /// Sets `files` to the positional arguments in their order. Always true.
    static bool GetFileList(std::vector<FilePath>& files);

private:
    static std::map<std::string, std::string> s_mapArguments;
    static std::vector<FilePath> s_vecFiles;
    static FilePath s_fpProgramPath;
    static bool s_blnInitialized;
};

} // namespace Tavro
