// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/RunDirectory.h"

#include "links/ControllerStep.h"
#include "tavrobase/AtomicFile.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/SystemPath.h"
#include "tavrobase/SystemUtilities.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <thread>
#include <utility>

namespace Frontend {

namespace {

constexpr const char* kFirstLine = "vortik run 1";

std::string record_file(const std::string& root) { return root + "/.vortik-run"; }

template <typename Number>
bool read_number(const std::string& text, Number& number)
{
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    return read.ec == std::errc {} && read.ptr == end;
}

/// Name of a program's file, without the words that the system adds when the file has been
/// replaced.
std::string program_name(const std::string& path)
{
    std::string name = path.substr(path.rfind('/') + 1);
    return name.substr(0, name.find(' '));
}

bool is_step_program(const Tavro::RunningProgram& program)
{
    static constexpr std::array kNames { "TreeGen", "Vortik_Extractor", "Vortik_PreCalc",
        "Vortik_RotorProg", "Vortik_Solver", "Vortik_Adapter" };
    const std::string name = program_name(program.path);
    return std::any_of(kNames.begin(), kNames.end(),
        [&](const char* known) { return name == known || name == std::string(known) + "-omp"; });
}

} // namespace

std::optional<std::string> run_root(const std::string& text)
{
    namespace fs = std::filesystem;
    const fs::path path = Tavro::SystemPath(text);
    std::error_code error;
    // A file that is a link to another one stands where it is, as the files do that it names.
    const fs::path directory
        = fs::is_directory(path, error) ? path : fs::absolute(path, error).parent_path();
    if (!fs::exists(path, error))
        return std::nullopt;
    const fs::path root = fs::canonical(directory, error);
    return error || root == root.root_path() ? std::nullopt : std::optional(Tavro::PathText(root));
}

Tavro::FilePath link_key(const std::string& root) { return Tavro::AsWritten(root + "/"); }

bool is_key_of(const std::string& key, const std::string& root)
{
    if (key == link_key(root).Get())
        return true;
    const auto other = Tavro::IsRooted(key) ? run_root(key) : std::nullopt;
    return other && Tavro::LeadToOneFile(*other, root);
}

std::string binary_case(const std::string& root) { return root + "/.vortik-case"; }

std::string usual_completion_file(const std::string& root) { return root + "/.vortik-completion"; }

std::string remembered_text(const std::string& root)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(Tavro::SystemPath(record_file(root)), error))
        return ""; // a pipe would not let go of us
    std::ifstream file(record_file(root), std::ios::binary);
    std::string text;
    std::getline(file, text, '\0');
    return text;
}

bool remember_text(const std::string& root, const std::string& text, std::string& reason)
{
    if (!text.empty())
        return Tavro::writeFileAtomically(Tavro::AsWritten(record_file(root)), text, reason);
    std::error_code error;
    std::filesystem::remove(Tavro::SystemPath(record_file(root)), error);
    if (error)
        reason = Tavro::error_text(error.default_error_condition().value());
    return !error;
}

bool remember_run(const std::string& root, const RunRecord& record, std::string& reason)
{
    std::string text = std::string(kFirstLine) + "\ncase " + record.caseFile + "\nname "
        + record.caseName + "\ncompletion " + record.completionFile + "\nhost " + record.host
        + "\ncontroller " + std::to_string(record.controller) + "\nmark " + record.mark + "\nlink "
        + std::to_string(record.link) + "\nsince " + std::to_string(record.since) + "\ngrid "
        + record.built.grid + "\nboundaries " + record.built.boundaries + "\nrotors "
        + record.built.rotors + '\n';
    for (const WorkTime& time : record.earlier)
        text += "earlier " + std::to_string(time.begin) + ' ' + std::to_string(time.end) + '\n';
    for (const LogMark& log : record.logs)
        text += "log " + std::to_string(log.size) + ' ' + log.digest + ' ' + log.file + '\n';
    if (record.found)
        text += "uncleaned " + record.uncleaned + "\nfound " + std::to_string(record.found->size())
            + '\n';
    for (const FileMark& mark : record.found.value_or(std::vector<FileMark> {}))
        text += "file " + std::to_string(mark.time) + ' ' + std::to_string(mark.size) + ' '
            + mark.file + '\n';
    return remember_text(root, text, reason);
}

namespace {

/// Splits at the first blank.
std::pair<std::string, std::string> halves(const std::string& text)
{
    const auto blank = text.find(' ');
    if (blank == std::string::npos)
        return { text, "" };
    return { text.substr(0, blank), text.substr(blank + 1) };
}

void take_earlier(const std::string& value, RunRecord& record)
{
    const auto [begin, end] = halves(value);
    WorkTime time;
    if (read_number(begin, time.begin) && read_number(end, time.end))
        record.earlier.push_back(time);
}

void take_log(const std::string& value, RunRecord& record)
{
    const auto [size, rest] = halves(value);
    const auto [digest, file] = halves(rest);
    LogMark log { file, 0, digest };
    if (read_number(size, log.size))
        record.logs.push_back(std::move(log));
}

void take_mark(const std::string& value, std::vector<FileMark>& marks)
{
    const auto [time, rest] = halves(value);
    const auto [size, file] = halves(rest);
    FileMark mark { file };
    if (read_number(time, mark.time) && read_number(size, mark.size))
        marks.push_back(std::move(mark));
}

/// A file of the directory as it was called then, by its name as it is called now.
void follow(const std::string& then, const std::string& root, std::string& file)
{
    std::error_code error;
    if (!file.starts_with(then + "/"))
        return;
    const std::string now = root + file.substr(then.size());
    if (std::filesystem::exists(Tavro::SystemPath(now), error))
        file = now;
}

} // namespace

std::optional<RunRecord> recall_run(const std::string& root)
{
    std::istringstream text(remembered_text(root));
    std::string line;
    if (!std::getline(text, line) || line != kFirstLine)
        return std::nullopt;
    std::map<std::string, std::string> values;
    RunRecord record;
    std::vector<FileMark> marks;
    while (std::getline(text, line)) {
        auto [word, value] = halves(line);
        if (word == "earlier")
            take_earlier(value, record);
        else if (word == "log")
            take_log(value, record);
        else if (word == "file")
            take_mark(value, marks);
        else
            values[word] = std::move(value);
    }
    record.caseFile = values["case"];
    record.caseName = values["name"];
    record.completionFile = values["completion"];
    record.host = values["host"];
    record.mark = values["mark"];
    record.built = { values["grid"], values["boundaries"], values["rotors"] };
    (void)read_number(values["since"], record.since); // an older `vortik` has not noted it
    std::size_t count = 0; // an older `vortik` has noted none
    if (read_number(values["found"], count) && count == marks.size())
        record.found = std::move(marks);
    record.uncleaned = values["uncleaned"];
    if (record.completionFile.empty() || !read_number(values["controller"], record.controller)
        || !read_number(values["link"], record.link))
        return std::nullopt;
    // The directory may have been moved since, or this is a copy of it.
    const std::string then = record.caseFile.substr(0, record.caseFile.rfind('/') + 1);
    if (then.size() > 1 && then != root + "/") {
        const std::string before = then.substr(0, then.size() - 1);
        follow(before, root, record.completionFile);
        follow(before, root, record.caseFile);
    }
    return record;
}

void note_end(const std::string& root)
{
    // The time of the file alone, so that the record of a run that begins just now is not lost.
    std::error_code error; // without the note the end is taken from the logs
    std::filesystem::last_write_time(
        Tavro::SystemPath(record_file(root)), std::filesystem::file_time_type::clock::now(), error);
    // Files get their times from a clock that ticks every 10 ms at most: what somebody writes as
    // soon as we are gone must not seem older than the note.
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

std::optional<long long> noted_time(const std::string& root)
{
    return write_time(record_file(root));
}

std::optional<FileMark> mark_of(const std::string& root, const std::string& file)
{
    const std::string path = below(root, file);
    const auto time = write_time(path);
    std::error_code error; // of a directory: it has no size of its own
    const auto size = std::filesystem::file_size(Tavro::SystemPath(path), error);
    return time ? std::optional(FileMark { file, error ? 0 : size, *time }) : std::nullopt;
}

std::string below(const std::string& root, const std::string& path)
{
    return Tavro::PathText(Tavro::SystemPath(root) / Tavro::SystemPath(path));
}

std::optional<long long> write_time(const std::string& file)
{
    std::error_code error;
    const auto time = std::filesystem::last_write_time(Tavro::SystemPath(file), error);
    if (error)
        return std::nullopt;
    return static_cast<long long>(time.time_since_epoch().count());
}

long long work_seconds(int seconds)
{
    using Clock = std::filesystem::file_time_type::clock;
    return std::chrono::duration_cast<Clock::duration>(std::chrono::seconds(seconds)).count();
}

std::optional<int> completion_word(const std::string& file)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(
            Tavro::SystemPath(file), error)) // a pipe would not let go of us
        return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    std::array<char, 16> bytes {};
    stream.read(bytes.data(), bytes.size());
    std::string text(bytes.data(), static_cast<std::size_t>(stream.gcount()));
    int word = 0;
    if (!text.ends_with('\n'))
        return std::nullopt;
    text.pop_back();
    // A number that no controller writes is somebody else's.
    const bool isWord = read_number(text, word)
        && (word == VRK::StepComplete || (word < 0 && word >= VRK::StepAdaptiveSolverFailed));
    return isWord ? std::optional(word) : std::nullopt;
}

bool is_here(const RunRecord& record) { return record.host == Tavro::GetHostname(); }

bool controller_lives(const RunRecord& record)
{
    return is_here(record) && !record.mark.empty()
        && Tavro::process_mark(record.controller) == record.mark;
}

std::vector<Tavro::RunningProgram> step_programs(const RunRecord& record)
{
    if (!is_here(record) || record.controller < 1)
        return {};
    // The number may belong to a program of somebody else by now.
    const std::string head = Tavro::process_mark(record.controller);
    if (!head.empty() && head != record.mark)
        return {};
    std::vector<Tavro::RunningProgram> programs = Tavro::programs_of_group(record.controller);
    programs.erase(std::remove_if(programs.begin(), programs.end(),
                       [](const Tavro::RunningProgram& one) { return !is_step_program(one); }),
        programs.end());
    return programs;
}

std::string names_of(const std::vector<Tavro::RunningProgram>& programs)
{
    std::string text;
    for (const Tavro::RunningProgram& program : programs)
        text += (text.empty() ? "" : ", ") + program_name(program.path) + " (process "
            + std::to_string(program.pid) + ")";
    return text;
}

} // namespace Frontend
