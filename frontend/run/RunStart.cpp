// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/RunStart.h"

#include "case/CaseFile.h"
#include "frontend/TextFile.h"
#include "frontend/run/Cleaning.h"
#include "frontend/run/EarlierRun.h"
#include "frontend/run/LogEnds.h"
#include "frontend/run/OwnFiles.h"
#include "frontend/run/StepWords.h"
#include "tavrobase/AtomicFile.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/SystemPath.h"
#include "tavrobase/SystemUtilities.h"

#include <filesystem>
#include <numeric>
#include <sstream>

namespace Frontend {

namespace {

namespace fs = std::filesystem;
using Tavro::LinkManager;

/// Absolute, since the controller reads a path as one of the root, and others read it later.
std::string completion_file(const std::string& root, const std::string& given)
{
    if (given.empty())
        return usual_completion_file(root);
    const std::string path = from_home(given); // as the controller reads it
    return Tavro::IsRooted(path) ? path : root + "/" + path;
}

std::string use_restart(VRK::ControllerInput& input, const std::string& root)
{
    const auto point = latest_restart(root, input.m_strCaseName);
    if (!point)
        return "there is no restart file of this case in " + root
            + "/Restarts; without --restart a new run begins";
    const std::uint32_t steps = std::accumulate(
        input.m_time.m_vecNtCell.begin(), input.m_time.m_vecNtCell.end(), std::uint32_t { 0 });
    if (point->step >= steps)
        return point->file + " is of step " + std::to_string(point->step) + ", and the case has "
            + std::to_string(steps) + " steps: nothing is left to do";
    input.m_bRestart = true;
    input.m_strRestartFile = point->file;
    return "";
}

} // namespace

std::string program_directory()
{
    const std::string program
        = Tavro::executable_path().value_or(Tavro::GetExecutablePath("vortik").Get());
    return Tavro::PathText(
        std::filesystem::absolute(Tavro::SystemPath(program)).parent_path() / "");
}

std::optional<PreparedRun> prepare_run(
    const std::string& caseFile, VRK::ControllerInput input, bool restart, std::string& reason)
{
    std::error_code error;
    if (fs::is_other(fs::status(Tavro::SystemPath(caseFile), error))) {
        reason = "a run needs a case that is a file in the directory of the run; a pipe or a "
                 "device lies in none: "
            + caseFile;
        return std::nullopt;
    }
    const auto root = run_root(caseFile);
    if (!root) {
        reason = "a run needs a directory of its own, below the top of the file system";
        return std::nullopt;
    }
    if (root->find('\n') != std::string::npos) {
        reason = "a run cannot be in a directory whose name has a line end";
        return std::nullopt;
    }
    // The controller is given the path as text, in which these characters are special to it.
    if (Tavro::FilePath(link_key(*root).Get()).Get() != link_key(*root).Get()) {
        reason = "a run cannot be in a directory whose path has \"~\", which is HOME to the "
                 "controller, or a backslash: "
            + *root;
        return std::nullopt;
    }
    PreparedRun run { *root, *root + "/" + Tavro::PathText(Tavro::SystemPath(caseFile).filename()),
        std::move(input), "", {}, {} };
    run.completionFile = completion_file(*root, run.input.m_fpCompletionFile.Get());
    if (run.completionFile.size() > VRK::kLongestCompletionPath) {
        reason = "the path of the completion file is longer than "
            + std::to_string(VRK::kLongestCompletionPath) + " bytes: " + run.completionFile;
        return std::nullopt;
    }
    if (!fs::is_directory(Tavro::SystemPath(run.completionFile).parent_path(), error)) {
        reason = "there is no directory for the completion file " + run.completionFile;
        return std::nullopt;
    }
    if (link_key(*root).Get().size() >= LinkManager::GetMaxKeyLength()) {
        reason = "the path of the run is longer than "
            + std::to_string(LinkManager::GetMaxKeyLength() - 2) + " bytes: " + *root;
        return std::nullopt;
    }
    run.input.m_strModelDir = *root;
    run.input.m_fpCompletionFile = Tavro::AsWritten(run.completionFile);
    run.built = digests_of(run.input); // before the restart file comes in
    if (restart)
        reason = use_restart(run.input, *root);
    const auto record = restart ? recall_run(*root) : std::nullopt;
    if (record)
        run.changed = changed_parts(record->built, run.built, run.input.m_adapt.m_bAdaptive);
    return reason.empty() ? std::optional(std::move(run)) : std::nullopt;
}

namespace {

/// What stood in a file before, put back unless the run has begun.
class Former {
public:
    explicit Former(const std::string& file)
        : m_file(file)
        , m_word(completion_word(file))
    {
    }
    ~Former()
    {
        if (m_isKept && m_word) // what cannot be put back is the end of a run that is over
            (void)Tavro::writeFileAtomically(
                Tavro::AsWritten(m_file), std::to_string(*m_word) + "\n");
    }
    Former(const Former&) = delete;
    Former& operator=(const Former&) = delete;
    Former(Former&&) = delete;
    Former& operator=(Former&&) = delete;
    void give_up() { m_isKept = false; }

private:
    std::string m_file;
    std::optional<int> m_word;
    bool m_isKept = true;
};

/// What is to be remembered of a run before it has a link.
RunRecord first_record(const PreparedRun& run)
{
    RunRecord record { run.caseFile, run.input.m_strCaseName, run.completionFile,
        Tavro::GetHostname(), -1, "", 0, 0, {}, run.built, mark_logs(run.root, all_logs()) };
    const auto former = recall_run(run.root);
    note_files(run.root, run.input, former, record);
    if (former && run.input.m_bRestart) {
        record.earlier = work_times(run.root, *former);
        if (!former->built.grid.empty())
            record.built = former->built;
    }
    return record;
}

} // namespace

std::optional<RunInSight> start_run(
    PreparedRun& run, const std::function<void()>& announce, std::string& reason)
{
    RunInSight started { run.root, first_record(run), nullptr, true };
    LinkManager::Result result {};
    // Of whoever is killed from here on until the run is remembered a link without a run is left.
    started.link = std::make_unique<VRK::GUIConLink>(link_key(run.root), result);
    if (result != LinkManager::Success) {
        reason = std::string("no link for the controller: ") + LinkManager::GetResultString(result);
        return std::nullopt;
    }
    run.input.m_uintGUILinkID = started.link->GetLinkID();
    (void)started.link->SetStepNumber(
        -1); // no solver yet; the controller says so in its first turn

    const std::string caseFile = binary_case(run.root);
    std::ostringstream bytes;
    std::string cause = "its completion path is too long"; // if no file fails
    if (!VRK::write_case(bytes, run.input)
        || !Tavro::writeFileAtomically(Tavro::AsWritten(caseFile), bytes.str(), cause)) {
        reason = "the case file " + caseFile + " cannot be written: " + cause;
        return std::nullopt;
    }
    const std::string formerRecord = remembered_text(run.root);
    Former formerWord(run.completionFile);
    std::error_code error;
    started.record.link = started.link->GetLinkID();
    started.record.since = write_time(caseFile).value_or(0);
    // Before the controller: whoever comes when this process has been killed must know of the run.
    if (!remember_run(run.root, started.record, cause)) {
        reason
            = "what is to be remembered of the run cannot be written in " + run.root + ": " + cause;
        fs::remove(Tavro::SystemPath(caseFile), error);
        return std::nullopt;
    }
    announce(); // only now, since a run that could not be written down takes nothing away
    // The last word of an earlier run must not be taken for that of this one.
    fs::remove(Tavro::SystemPath(run.completionFile), error);

    const std::string program = program_directory() + kControllerName;
    const auto child = Tavro::start_apart({ program, program, { "-input=" + caseFile } });
    if (child.pid < 0) {
        reason = program + " cannot be started: " + Tavro::error_text(child.error)
            + "; nothing has been changed"; // whatever has been announced
        fs::remove(Tavro::SystemPath(caseFile), error);
        (void)remember_text(run.root, formerRecord, cause); // it tells of the run before, if of any
        return std::nullopt;
    }
    formerWord.give_up();
    started.record.controller = child.pid;
    started.record.mark = Tavro::process_mark(child.pid);
    if (!remember_run(run.root, started.record, cause))
        // It runs all the same; others find it by its link.
        reason = "the controller's process cannot be noted in " + run.root + ": " + cause;
    return started;
}

} // namespace Frontend
