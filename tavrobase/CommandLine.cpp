// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/CommandLine.h"

#include "tavrobase/Assertion.h"
#include "tavrobase/Exception.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/platform/Locale.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <sstream>
#include <string_view>

namespace Tavro {

// NOLINTBEGIN(cert-err58-cpp): a program that cannot build these cannot start
std::map<std::string, std::string> CommandLine::s_mapArguments;
std::vector<FilePath> CommandLine::s_vecFiles;
FilePath CommandLine::s_fpProgramPath(".");
// NOLINTEND(cert-err58-cpp)
bool CommandLine::s_blnInitialized = false;

namespace {

constexpr const char* kAssertionFile = "tavrobase/CommandLine";
constexpr const char* kDebugName = "debug";

[[noreturn]] void forbid(const char* operation)
{
    std::cerr << std::string("*** Error: CommandLine ") + operation
            + " is unimplemented and was called.\n";
    AssertionFailed("( false )", kAssertionFile, __LINE__);
}

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// Where the program lies. The rule looks for the program's own name before a colon, which only an
/// expanded "~" can bring about; in all other cases the path stays as it was started.
FilePath program_path(const std::string& name)
{
    FilePath path;
    path.Set(name);
    if (name.empty() || !is_letter(name.front()) || !path.Get().starts_with(name + ":"))
        return path;
    path = FilePath(getCurrentDirectory().Get() + "/" + name);
    return path.Exists() ? path : GetExecutablePath(name);
}

void report_missing(const std::string& name)
{
    PrintErrorDebugHelper(1, "Unable to find parameter for: " + name);
}

/// The value to convert, or null after a report.
const std::string* find_value(const std::map<std::string, std::string>& arguments,
    const std::string& name, bool reportMissing)
{
    const auto found = arguments.find(name);
    if (found == arguments.end()) {
        if (reportMissing)
            report_missing(name);
        return nullptr;
    }
    if (found->second.empty()) {
        if (name != kDebugName)
            PrintErrorDebugHelper(1, "No argument given for parameter: " + name);
        return nullptr;
    }
    return &found->second;
}

/// The number at the front of a text, at its nearest if it is out of range.
bool leading_integer(const std::string& text, int base, int& value)
{
    const Platform::PlainLocaleScope plain;
    char* end = nullptr;
    const long long wide = std::strtoll(text.c_str(), &end, base);
    if (end == text.c_str())
        return false;
    using Range = std::numeric_limits<int>;
    value = static_cast<int>(std::clamp<long long>(wide, Range::min(), Range::max()));
    return true;
}

template <typename T>
bool leading_real(const std::string& text, T (*convert)(const char*, char**), T& value)
{
    const Platform::PlainLocaleScope plain;
    char* end = nullptr;
    const T number = convert(text.c_str(), &end);
    if (end == text.c_str())
        return false;
    value = number;
    return true;
}

/// Reads the arguments behind the program's name, one after the other.
class Parser {
public:
    Parser(std::map<std::string, std::string>& arguments, std::vector<FilePath>& files)
        : m_arguments(arguments)
        , m_files(files)
    {
    }

    void take(const std::string& argument)
    {
        if (m_onlyFiles || (!m_optionSeen && !argument.starts_with('-'))) {
            m_files.emplace_back(argument);
        } else if (argument == "--") {
            store();
            m_onlyFiles = true;
        } else if (argument.starts_with('-')) {
            store();
            take_option(
                argument.substr(std::min(argument.find_first_not_of('-'), argument.size())));
            m_optionSeen = true;
        } else {
            m_value += m_value.empty() ? argument : " " + argument;
        }
    }

    /// Stores the pair that is being read, if any. A value without a name waits for the next name.
    void store()
    {
        if (m_name.empty())
            return;
        m_arguments.emplace(m_name, m_value); // the first value of a name stays
        m_name.clear();
        m_value.clear();
    }

private:
    void take_option(const std::string& text)
    {
        const auto equals = text.find('=');
        if (equals == std::string::npos) {
            m_name = text;
            return;
        }
        m_arguments.emplace(text.substr(0, equals), text.substr(equals + 1));
        m_name.clear();
        m_value.clear();
    }

    std::map<std::string, std::string>& m_arguments;
    std::vector<FilePath>& m_files;
    std::string m_name;
    std::string m_value;
    bool m_optionSeen = false;
    bool m_onlyFiles = false;
};

/// The pieces before each delimiter, and the last one unless it is empty.
std::vector<std::string> words_of(const std::string& text, char delimiter)
{
    std::vector<std::string> words;
    std::istringstream stream(text);
    for (std::string word; std::getline(stream, word, delimiter);)
        words.push_back(word);
    return words;
}

} // namespace

CommandLine::CommandLine(const CommandLine& /*other*/) { forbid("copy constructor"); }

// Every assignment ends the process.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp)
CommandLine& CommandLine::operator=(const CommandLine& /*other*/) { forbid("operator="); }

void CommandLine::SetParameters(int argc, const char* const* argv)
{
    s_fpProgramPath = program_path(argc > 0 ? argv[0] : "");
    Parser parser(s_mapArguments, s_vecFiles);
    for (int i = 1; i < argc; ++i)
        parser.take(argv[i]);
    parser.store();
    s_blnInitialized = true;
}

bool CommandLine::Initialized() { return s_blnInitialized; }

FilePath CommandLine::GetProgramPath() { return s_fpProgramPath; }

bool CommandLine::GetArgument(std::string name) { return s_mapArguments.contains(name); }

bool CommandLine::GetArgument(std::string name, int& value)
{
    const std::string* text = find_value(s_mapArguments, name, name != kDebugName);
    constexpr int kAnyBase = 0;
    return text != nullptr && leading_integer(*text, kAnyBase, value);
}

bool CommandLine::GetArgument(std::string name, float& value)
{
    const std::string* text = find_value(s_mapArguments, name, true);
    return text != nullptr && leading_real(*text, std::strtof, value);
}

bool CommandLine::GetArgument(std::string name, double& value)
{
    const std::string* text = find_value(s_mapArguments, name, true);
    return text != nullptr && leading_real(*text, std::strtod, value);
}

bool CommandLine::GetArgument(std::string name, std::string& value)
{
    const std::string* text = find_value(s_mapArguments, name, true);
    if (text == nullptr)
        return false;
    value = *text;
    return true;
}

bool CommandLine::GetArgument(std::string name, bool& value)
{
    const std::string* text = find_value(s_mapArguments, name, true);
    if (text == nullptr)
        return false;
    const std::string word = ToLowerCase(*text);
    if (word == "true" || word == "t" || word == "yes" || word == "y") {
        value = true;
        return true;
    }
    if (word == "false" || word == "f" || word == "no" || word == "n") {
        value = false;
        return true;
    }
    if (word.find_first_not_of("+-.0123456789") != std::string::npos)
        return false;
    int number = 0; // also of a text like "+.", which holds no digit
    constexpr int kDecimal = 10;
    (void)leading_integer(word, kDecimal, number);
    value = number != 0;
    return true;
}

bool CommandLine::GetArgument(std::string name, std::vector<std::string>& values)
{
    const std::string* text = find_value(s_mapArguments, name, true);
    if (text == nullptr)
        return false;
    for (const std::string& word : words_of(*text, ' ')) {
        for (std::string& piece : words_of(word, ','))
            values.push_back(std::move(piece));
    }
    return true;
}

bool CommandLine::GetFileList(std::vector<FilePath>& files)
{
    files = s_vecFiles;
    return true;
}

} // namespace Tavro
