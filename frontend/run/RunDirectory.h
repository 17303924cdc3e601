// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/run/CaseDigests.h"
#include "tavrobase/FilePath.h"
#include "tavrobase/Surveillance.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Frontend {

/// A run is known by its directory. What `vortik` keeps there has names that begin with ".vortik-",
/// directly in the directory: the controller cleans directories below it, so neither a new run nor
/// the end of one takes them away.

/// A stretch of time in which a run worked, by the clock of its directory's file system.
struct WorkTime {
    long long begin = 0;
    long long end = 0;
};

/// A log as it was before a run.
struct LogMark {
    std::string file; ///< from the root of the run
    std::uint64_t size = 0;
    std::string digest; ///< of its last bytes
};

/// A file as it was before a run.
struct FileMark {
    std::string file; ///< from the root of the run, or from the top of the file system
    std::uint64_t size = 0;
    long long time = 0; ///< when it was written, as in `WorkTime`
};

/// What those who come later need to know of the last run of a directory.
struct RunRecord {
    std::string caseFile; ///< the readable case
    std::string caseName; ///< stem of its files
    std::string completionFile;
    std::string host; ///< on which the controller runs
    long long controller = -1; ///< its process, and the group of all programs of the run
    std::string mark; ///< which process of that number
    unsigned link = 0; ///< number of the front end's link
    long long since = 0; ///< when it began, as in `WorkTime`; 0 if nobody has noted it
    std::vector<WorkTime> earlier = {}; ///< of the runs that it continues
    CaseDigests built = {}; ///< what its grid and cards were made from
    std::vector<LogMark> logs = {}; ///< those that were there before it
    /// Cards and grids of the runs before it, and what else it may replace: it may have ended
    /// before it came to that. Nothing if an older `vortik` has not noted them.
    std::optional<std::vector<FileMark>> found = std::nullopt;
    std::string uncleaned = {}; ///< digest of all that it was to clean; empty if that was nothing
};

/// The directory of a run, given itself or a file in it: absolute, every link followed, without "/"
/// at its end. Nothing if there is no such thing, or if it is the top of the file system.
[[nodiscard]] std::optional<std::string> run_root(const std::string& text);

/// The key of the run's link, which is the path of its model.
[[nodiscard]] Tavro::FilePath link_key(const std::string& root);

/// Whether a link's key means this run: other front ends may come to it by another way.
[[nodiscard]] bool is_key_of(const std::string& key, const std::string& root);

/// Where the case goes from which the controller starts; it lies in the root, for its directory is
/// the controller's root, and the controller takes it away.
[[nodiscard]] std::string binary_case(const std::string& root);
/// The completion file of a case that names none.
[[nodiscard]] std::string usual_completion_file(const std::string& root);

/// What is remembered of the run, as it stands; empty if there is nothing. `remember_text` puts it
/// back.
[[nodiscard]] std::string remembered_text(const std::string& root);
/// False, with the system's reason, if it could not be written. Nothing to remember takes the file
/// away.
[[nodiscard]] bool remember_text(
    const std::string& root, const std::string& text, std::string& reason);
/// The same.
[[nodiscard]] bool remember_run(
    const std::string& root, const RunRecord& record, std::string& reason);
/// Nothing if no run is known, or what is kept of it has been damaged.
[[nodiscard]] std::optional<RunRecord> recall_run(const std::string& root);

/// Notes that a run works no more, for who has seen the last of its programs end.
void note_end(const std::string& root);
/// When something was noted last, as in `WorkTime`; nothing if there is nothing.
[[nodiscard]] std::optional<long long> noted_time(const std::string& root);

/// The file as it stands; nothing if there is no such file.
[[nodiscard]] std::optional<FileMark> mark_of(const std::string& root, const std::string& file);
/// A path of the root, or one from the top of the file system as it is.
[[nodiscard]] std::string below(const std::string& root, const std::string& path);
/// When a file was written last, as in `WorkTime`; nothing if there is no such file.
[[nodiscard]] std::optional<long long> write_time(const std::string& file);
/// That many seconds, as in `WorkTime`.
[[nodiscard]] long long work_seconds(int seconds);

/// The number that a completion file holds; nothing if there is no such file or it holds anything
/// else.
[[nodiscard]] std::optional<int> completion_word(const std::string& file);

/// Whether the run's controller is on this machine, where processes and links can be seen.
[[nodiscard]] bool is_here(const RunRecord& record);
/// Whether the run's controller lives, here.
[[nodiscard]] bool controller_lives(const RunRecord& record);
/// Step programs of the run that are still running, here.
[[nodiscard]] std::vector<Tavro::RunningProgram> step_programs(const RunRecord& record);
/// "Vortik_Solver (process 123)", with commas between several.
[[nodiscard]] std::string names_of(const std::vector<Tavro::RunningProgram>& programs);

} // namespace Frontend
