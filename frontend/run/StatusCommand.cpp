// SPDX-License-Identifier: Apache-2.0
#include "frontend/ExitStatus.h"
#include "frontend/run/Display.h"
#include "frontend/run/Json.h"
#include "frontend/run/LinkedRun.h"
#include "frontend/run/RunCommands.h"
#include "frontend/run/RunInSight.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/Surveillance.h"

#include <iostream>
#include <optional>
#include <set>

namespace Frontend {

namespace {

struct Status {
    std::string text;
    std::string state; ///< for machines
    int exitStatus = kFinished;
    std::string members;
};

Status status_of_living(const std::string& root, const RunRecord& record)
{
    Tavro::LinkManager::Result result {};
    const auto link = attach_to_run(root, record, result);
    const auto progress = link == nullptr ? std::nullopt : read_progress(*link, result);
    if (!progress || progress->step <= 0)
        return { "running", "running", kFinished, "" };
    return { "running, " + progress_text(*progress), "running", kFinished,
        "," + progress_members(*progress) };
}

Status status_of_linked(const LinkedRun& run, bool isOurs)
{
    const std::string whose = isOurs ? "" : " (begun by another front end)";
    if (run.progress.step <= 0)
        return { "running" + whose, "running", kFinished, "" };
    return { "running, " + progress_text(run.progress) + whose, "running", kFinished,
        "," + progress_members(run.progress) };
}

/// Nothing if there is no run at all.
std::optional<Status> status_of(const std::string& root, const std::optional<RunRecord>& known)
{
    if (known && controller_lives(*known))
        return status_of_living(root, *known);
    if (const auto linked = linked_run(root, known)) {
        if (linked->isTouched)
            return status_of_linked(*linked, is_half_remembered(linked->link, known));
        if (!known)
            return Status {
                "has a link of another front end, and no controller is to be seen on it", "waiting",
                kFinished, ""
            };
    }
    if (!known)
        return std::nullopt;
    const RunRecord& record = *known;
    if (!is_here(record) && completion_word(record.completionFile) == VRK::StepNotFinished)
        return Status { "begun on " + record.host + "; from here it cannot be seen whether it runs",
            "elsewhere", kFinished, "" };
    const Ending ending = ending_of(record, {}, {});
    Status status { ending_text(ending), outcome_name(ending.outcome),
        exit_status_of(ending.outcome), "," + json_member("completion", ending.word) };
    const auto left = step_programs(record);
    if (!left.empty())
        status.text += "; still running: " + names_of(left);
    return status;
}

void tell_status(const std::string& root, const Status& status, Display& display)
{
    display.tell("status", root + ": " + status.text,
        "," + json_member("directory", root) + "," + json_member("state", status.state)
            + status.members);
}

/// Directories of all runs whose link is there.
std::set<std::string> linked_roots()
{
    std::vector<Tavro::LinkManager::LinkDebugInfo> links;
    std::set<std::string> roots;
    if (Tavro::LinkManager::GetLinkDebugInfo(links) != Tavro::LinkManager::Success)
        return roots;
    for (const auto& link : links) {
        const std::string& key = link.m_strKey;
        if (link.m_nAttachments == 0 || link.m_nDataSize != sizeof(VRK::GUIRecord)
            || !Tavro::IsRooted(key))
            continue;
        if (const auto root = run_root(key)) // else the directory is gone, and the run with it
            roots.insert(*root);
    }
    return roots;
}

} // namespace

int status_command(const std::string& path, bool json)
{
    const auto root = path.empty() ? std::nullopt : run_root(path);
    const auto complain = [](const std::string& what, int status) {
        std::cerr << "vortik: " << what << '\n';
        return status;
    };
    if (!path.empty() && !root)
        return complain(path + ": no such directory", kBadInput);
    // Whoever ends us in the middle would leave our share in the links behind.
    const Tavro::UserSignals signals;
    Display display(json);
    const LinkUse links;
    // Without links there is still what is remembered of a run.
    const bool linked = links.result() == Tavro::LinkManager::Success;
    if (!linked)
        std::cerr << "vortik: " << links.complaint() << '\n';
    if (!linked && !root)
        return kFailed;
    if (root) {
        const auto status = status_of(*root, recall_run(*root));
        if (!status)
            return complain("no run is known in " + *root + "; `vortik run` starts one", kBadInput);
        tell_status(*root, *status, display);
        return status->exitStatus;
    }
    bool any = false;
    for (const std::string& one : linked_roots()) {
        if (const auto status = status_of(one, recall_run(one))) {
            tell_status(one, *status, display);
            any = true;
        }
    }
    if (!any && !json)
        display.tell("status", "No run of yours is under way on this machine.");
    return kFinished;
}

} // namespace Frontend
