// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/OwnFiles.h"

#include "frontend/run/StepWords.h"
#include "links/ControllerStep.h"
#include "tavrobase/SystemPath.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace Frontend {

namespace {

namespace fs = std::filesystem;

/// Residuals are written at every step, so the last of them tells how long a solver has worked.
const std::vector<std::string>& residual_files()
{
    static const std::vector<std::string> files { "Process_Output/MassRsdl.dat",
        "Process_Output/MomRsdl.dat", "Process_Output/VelRsdl.dat", "Process_Output/TurbRsdl.dat" };
    return files;
}

int last_word(const RunRecord& record)
{
    return completion_word(record.completionFile).value_or(VRK::StepNotFinished);
}

template <typename Choice>
std::vector<Results> chosen(const std::vector<Results>& results, const Choice& isChosen)
{
    std::vector<Results> all;
    for (const Results& one : results) {
        Results found { one.directory, {} };
        std::copy_if(one.files.begin(), one.files.end(), std::back_inserter(found.files), isChosen);
        if (!found.files.empty())
            all.push_back(std::move(found));
    }
    return all;
}

/// Whether `now` is what an archive or another file system has left of the time `then`: whole
/// seconds, or every other one.
bool is_rounded(long long now, long long then)
{
    return now % work_seconds(1) == 0 && now <= then && then - now < work_seconds(2);
}

bool was_written_in(const std::string& path, const std::vector<WorkTime>& times)
{
    const auto written = write_time(path);
    return written && std::any_of(times.begin(), times.end(), [&](const WorkTime& time) {
        return (time.begin <= *written && *written <= time.end) || is_rounded(*written, time.begin);
    });
}

/// Whether a step program writes the file and not the controller.
bool is_of_program(const std::string& file)
{
    static constexpr std::array kEndings { "/VRK.grid.dat", "/VRK.grd.L2G", "/GeomBC.dat",
        "/OuterBC.dat", "_body.Grd", "/ex_grid_struct_map.dat", ".RtrGeom", "/ParmRtr.h",
        "/PreCalc.dat", "/ParmFlw.h", "/Label.dat" };
    return std::any_of(kEndings.begin(), kEndings.end(),
        [&](const char* ending) { return file.ends_with(ending); });
}

bool is_log(const std::string& file)
{
    return file.starts_with("Process_Output/") || file.ends_with("/TreeGen.out")
        || file.ends_with("/TreeGen.err");
}

/// Which files are a run's, as far as the record of the last one tells.
class Ownership {
public:
    Ownership(const std::string& root, const RunRecord& record)
        : m_root(root)
        , m_record(record)
        , m_times(work_times(root, record))
        , m_died(last_word(record) == VRK::StepNotFinished)
    {
    }
    /// False if an older `vortik` has not noted when the run worked.
    [[nodiscard]] bool is_known() const { return !m_times.empty(); }
    [[nodiscard]] bool owns(const std::string& file) const
    {
        return was_written_in(below(m_root, file), m_times) || is_as_found(file)
            || (m_died && is_of_orphan(file));
    }
    /// Whether the file stands as it was before the last run, which has not come to it.
    [[nodiscard]] bool is_as_found(const std::string& file) const
    {
        const auto now = mark_of(m_root, file);
        const auto& found = m_record.found;
        return now && found && std::any_of(found->begin(), found->end(), [&](const FileMark& mark) {
            return mark.file == file && mark.size == now->size
                && (mark.time == now->time || is_rounded(now->time, mark.time));
        });
    }

private:
    /// A program that outlives its controller may write after everything by which the end of the
    /// run is known.
    [[nodiscard]] bool is_of_orphan(const std::string& file) const
    {
        return is_of_program(file)
            && m_record.since <= write_time(below(m_root, file)).value_or(m_record.since - 1);
    }

    const std::string& m_root;
    const RunRecord& m_record;
    std::vector<WorkTime> m_times;
    bool m_died; ///< without a word
};

/// What is there, file by file. Empty if there is nothing.
std::string digest_of(const std::string& root, const std::vector<Results>& results)
{
    std::string text;
    for (const Results& one : results) {
        for (const std::string& file : one.files) {
            const FileMark mark = mark_of(root, file).value_or(FileMark { file });
            text += std::to_string(mark.time) + ' ' + std::to_string(mark.size) + ' ' + file + '\n';
        }
    }
    return text.empty() ? "" : text_digest(text);
}

/// Files that runs of any case in this directory have written and that a later one may replace.
std::vector<std::string> files_of_runs(const std::string& root)
{
    std::vector<std::string> files;
    for (const std::string directory : { "Grid_Output", "Solver_Input" }) {
        std::error_code error; // a directory that is not there holds nothing
        for (fs::directory_iterator entry(Tavro::SystemPath(root + "/" + directory), error), end;
             !error && entry != end; entry.increment(error)) {
            std::error_code gone;
            if (entry->is_regular_file(gone))
                files.push_back(directory + "/" + Tavro::PathText(entry->path().filename()));
        }
    }
    return files;
}

} // namespace

std::vector<WorkTime> work_times(const std::string& root, const RunRecord& record)
{
    if (record.since == 0)
        return {};
    WorkTime last { record.since, record.since };
    const auto until = [&](std::optional<long long> time) {
        last.end = std::max(last.end, time.value_or(last.end));
    };
    const auto lastWord = write_time(record.completionFile);
    until(lastWord);
    if (const int word = last_word(record);
        word == VRK::StepStopped || word == VRK::StepNotFinished) {
        // The last program has gone on for a while after that word: until somebody has seen its
        // end, or as far as can be known else, until it wrote its last line.
        const auto noted = noted_time(root);
        until(noted);
        if (!lastWord || !noted || *noted <= *lastWord) {
            for (const std::string& log : all_logs())
                until(write_time(root + "/" + log));
            for (const std::string& file : residual_files())
                until(write_time(root + "/" + file));
            last.end += work_seconds(2);
        }
    }
    std::vector<WorkTime> times = record.earlier;
    times.push_back(last);
    return times;
}

std::vector<Results> strangers_among(const std::string& root, const std::vector<Results>& results,
    const std::vector<WorkTime>& times)
{
    return chosen(results,
        [&](const std::string& file) { return !was_written_in(below(root, file), times); });
}

std::vector<Results> strange_results(
    const std::string& root, const RunRecord& record, const std::vector<Results>& cleaned)
{
    const auto times = work_times(root, record);
    if (times.empty())
        return {};
    const auto strangers = strangers_among(root, cleaned, times);
    const bool isUncleaned
        = !record.uncleaned.empty() && digest_of(root, strangers) == record.uncleaned;
    return isUncleaned ? std::vector<Results> {} : strangers;
}

std::vector<Results> strange_cards(
    const std::string& root, const RunRecord& record, const std::vector<Results>& replaced)
{
    const Ownership runs(root, record);
    if (!runs.is_known() || !record.found)
        return {};
    return chosen(
        replaced, [&](const std::string& file) { return !is_log(file) && !runs.owns(file); });
}

std::vector<Results> strange_input(
    const std::string& root, const RunRecord& record, const std::vector<Results>& replaced)
{
    const Ownership runs(root, record);
    if (!runs.is_known())
        return {};
    return chosen(replaced, [&](const std::string& file) { return !runs.owns(file); });
}

void note_files(const std::string& root, const VRK::ControllerInput& input,
    const std::optional<RunRecord>& former, RunRecord& record)
{
    std::vector<std::string> files
        = files_of(joined(cards_to_be_replaced(root, input), input_to_be_replaced(root, input)));
    if (former) {
        const Ownership runs(root, *former);
        for (const std::string& file : files_of_runs(root)) {
            if (runs.is_known() && runs.owns(file))
                files.push_back(file);
        }
        for (const FileMark& mark : former->found.value_or(std::vector<FileMark> {})) {
            if (runs.is_as_found(mark.file))
                files.push_back(mark.file);
        }
    }
    std::sort(files.begin(), files.end());
    files.erase(std::unique(files.begin(), files.end()), files.end());
    record.found.emplace();
    for (const std::string& file : files) {
        const auto mark = mark_of(root, file);
        if (mark && !is_log(file) && file.find('\n') == std::string::npos)
            record.found->push_back(*mark);
    }
    if (!input.m_bRestart)
        record.uncleaned = digest_of(root, results_to_be_cleaned(root, input.m_strCaseName));
    else if (former)
        record.uncleaned = former->uncleaned;
}

} // namespace Frontend
