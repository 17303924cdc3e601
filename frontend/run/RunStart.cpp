// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/RunStart.h"

#include "case/CaseFile.h"
#include "frontend/run/EarlierRun.h"
#include "tavrobase/AtomicFile.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/SystemUtilities.h"

#include <filesystem>
#include <numeric>
#include <sstream>

namespace Frontend {

namespace {

namespace fs = std::filesystem;
using Tavro::LinkManager;

constexpr const char* kController = "Vortik_Controller";

bool occupied(const std::string& path) { return Tavro::IsOccupied(Tavro::AsWritten(path)); }

/// Absolute, since the controller reads a path as one of the root, and others read it later.
std::string completion_file(const std::string& root, const std::string& given)
{
    if (given.empty())
        return usual_completion_file(root);
    return given.starts_with('/') ? given : root + "/" + given;
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
    return (std::filesystem::absolute(program).parent_path() / "").string();
}

std::optional<PreparedRun> prepare_run(
    const std::string& caseFile, VRK::ControllerInput input, bool restart, std::string& reason)
{
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
    if (Tavro::FilePath(binary_case(*root)).Get() != binary_case(*root)) {
        reason = "a run cannot be in a directory whose path has \"~\" or a backslash: " + *root;
        return std::nullopt;
    }
    PreparedRun run { *root, *root + "/" + fs::path(caseFile).filename().string(), std::move(input),
        "" };
    run.completionFile = completion_file(*root, run.input.m_fpCompletionFile.Get());
    if (run.completionFile.size() > VRK::kLongestCompletionPath) {
        reason = "the path of the completion file is longer than "
            + std::to_string(VRK::kLongestCompletionPath) + " bytes: " + run.completionFile;
        return std::nullopt;
    }
    std::error_code error;
    if (!fs::is_directory(fs::path(run.completionFile).parent_path(), error)) {
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
    if (restart)
        reason = use_restart(run.input, *root);
    return reason.empty() ? std::optional(std::move(run)) : std::nullopt;
}

std::string obstacle(const PreparedRun& run, bool force)
{
    const auto record = recall_run(run.root);
    if (record && controller_lives(*record))
        return "a run is under way in " + run.root + " (controller: process "
            + std::to_string(record->controller) + "); `vortik stop` stops it";
    if (record) {
        const auto left = step_programs(*record);
        if (!left.empty())
            return "of an earlier run in " + run.root + " there is still running: " + names_of(left)
                + "; `vortik stop` ends it";
    }
    if (force)
        return "";
    if (record && !is_here(*record)
        && completion_word(record->completionFile) == VRK::StepNotFinished)
        return "a run in " + run.root + " was begun on " + record->host
            + " and has not ended, as far as can be seen from here; --force begins another";
    if (occupied(run.completionFile) && !completion_word(run.completionFile))
        return run.completionFile
            + " is in the place of the completion file and is none; --force replaces it";
    if (!record && occupied(binary_case(run.root)))
        return binary_case(run.root)
            + " is in the place of the controller's case file; --force replaces it";
    return "";
}

std::string lack_of_programs(const PreparedRun& run)
{
    const std::string directory = program_directory();
    std::vector<std::string> missing = missing_programs(directory, run.input);
    if (!occupied(directory + kController))
        missing.insert(missing.begin(), kController);
    if (missing.empty())
        return "";
    return "missing beside vortik, in " + directory + ": " + Tavro::MergeString(missing, ", ");
}

std::optional<RunInSight> start_run(PreparedRun& run, std::string& reason)
{
    RunInSight started { run.root, {}, nullptr, true };
    LinkManager::Result result {};
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
    if (!VRK::write_case(bytes, run.input)
        || !Tavro::writeFileAtomically(Tavro::AsWritten(caseFile), bytes.str())) {
        reason = "the case file " + caseFile + " cannot be written";
        return std::nullopt;
    }
    // The last word of an earlier run must not be taken for that of this one.
    std::error_code error;
    fs::remove(run.completionFile, error);
    RunRecord& record = started.record;
    record = { run.caseFile, run.input.m_strCaseName, run.completionFile, Tavro::GetHostname(), -1,
        "", started.link->GetLinkID() };

    const std::string program = program_directory() + kController;
    const auto child = Tavro::start_apart({ program, program, { "-input=" + caseFile } });
    if (child.pid < 0) {
        reason = program + " cannot be started: " + Tavro::error_text(child.error);
        fs::remove(caseFile, error);
        return std::nullopt;
    }
    record.controller = child.pid;
    record.mark = Tavro::process_mark(child.pid);
    if (!remember_run(run.root, record))
        // It runs all the same; nobody else will find it but by its link.
        reason = "what `vortik watch` needs to know cannot be written in " + run.root;
    return started;
}

} // namespace Frontend
