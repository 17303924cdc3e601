// SPDX-License-Identifier: Apache-2.0
#include "frontend/ExitStatus.h"
#include "frontend/run/Follow.h"
#include "frontend/run/Json.h"
#include "frontend/run/LinkedRun.h"
#include "frontend/run/RunCommands.h"

#include <chrono>
#include <iostream>

namespace Frontend {

namespace {

constexpr unsigned kLook = 100; // milliseconds
constexpr auto kPatience = std::chrono::seconds(5); // with a program that has been asked to end

int complain(const std::string& what, int status = kBadInput)
{
    std::cerr << "vortik: " << what << '\n';
    return status;
}

/// The run of a directory, as far as it is known; else a complaint. Needs a share in the links.
std::optional<RunInSight> find_run(const std::string& root)
{
    auto record = recall_run(root);
    if (!record || !controller_lives(*record)) {
        if (const auto linked = linked_run(root, record); linked && linked->isTouched)
            return RunInSight { root, record_of(*linked, record), nullptr, false, seconds_now() };
    }
    if (record)
        return RunInSight { root, std::move(*record), nullptr, false, std::nullopt };
    // The caller has the status.
    (void)complain("no run is known in " + root + "; `vortik run` starts one");
    return std::nullopt;
}

/// Whether there is a directory and a share in the links; else a complaint, and the exit status.
int complaint_of(
    const std::string& path, const std::optional<std::string>& root, const LinkUse& links)
{
    if (!root)
        return complain(path + ": no such directory");
    if (links.result() != Tavro::LinkManager::Success)
        return complain(links.complaint(), kFailed);
    return kFinished;
}

bool is_elsewhere(const RunInSight& run)
{
    return !run.linkedSince && !is_here(run.record)
        && completion_word(run.record.completionFile) == VRK::StepNotFinished;
}

int complain_of_distance(const RunInSight& run)
{
    return complain("the run in " + run.root + " was begun on " + run.record.host
        + " and can be seen from there alone");
}

bool lives(const RunInSight& run) { return run.linkedSince || controller_lives(run.record); }

/// False, after a complaint, if there is no link though the controller lives.
bool attach(RunInSight& run)
{
    Tavro::LinkManager::Result result {};
    run.link = attach_to_run(run.root, run.record, result);
    if (run.link != nullptr || !lives(run))
        return true;
    const std::string process = run.record.controller < 1
        ? ""
        : " (process " + std::to_string(run.record.controller) + ")";
    (void)complain("no link to the controller" + process + ": "
        + Tavro::LinkManager::GetResultString(result)); // the caller has the status
    return false;
}

/// Ends what a run without a controller has left behind.
int end_programs_left(const RunInSight& run, Display& display, Tavro::UserSignals& signals)
{
    const auto left = step_programs(run.record);
    display.tell("ending", "The controller is gone. Ending " + names_of(left) + ".");
    for (const bool withoutAsking : { false, true }) {
        for (const auto& program : step_programs(run.record))
            (void)Tavro::end_process(program.pid, withoutAsking); // gone since, or seen below
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        while (!step_programs(run.record).empty() && std::chrono::steady_clock::now() < deadline)
            signals.wait(kLook);
    }
    const auto still = step_programs(run.record);
    if (still.empty()) {
        note_end(run.root);
        return kFinished;
    }
    return complain("still running: " + names_of(still), kFailed);
}

/// Finds the run in that directory if it is one of this machine; else complains, and gives the exit
/// status.
int find_run_here(const std::string& path, const LinkUse& links, std::optional<RunInSight>& run)
{
    const auto root = run_root(path);
    if (const int status = complaint_of(path, root, links); status != kFinished)
        return status;
    run = find_run(*root);
    if (!run)
        return kBadInput;
    return is_elsewhere(*run) ? complain_of_distance(*run) : kFinished;
}

} // namespace

int watch_command(const std::string& path, bool json)
{
    Tavro::UserSignals signals;
    Display display(json);
    const LinkUse links;
    std::optional<RunInSight> run;
    if (const int status = find_run_here(path, links, run); status != kFinished)
        return status;
    if (lives(*run) && !attach(*run))
        return kFailed;
    const int status = follow_run(*run, display, signals, OnInterrupt::Leave);
    run->link.reset(); // before the share in the links ends
    return status;
}

int stop_command(const std::string& path, bool json)
{
    Tavro::UserSignals signals;
    Display display(json);
    const LinkUse links;
    std::optional<RunInSight> run;
    if (const int status = find_run_here(path, links, run); status != kFinished)
        return status;
    if (!lives(*run)) {
        if (!step_programs(run->record).empty())
            return end_programs_left(*run, display, signals);
        return complain(
            "nothing to stop in " + run->root + ": " + ending_text(ending_of(run->record, {}, {})));
    }
    if (!attach(*run))
        return kFailed;
    const auto result = run->link->SetStop(true);
    if (result != Tavro::LinkManager::Success)
        return complain(std::string("the controller cannot be asked to stop: ")
                + Tavro::LinkManager::GetResultString(result),
            kFailed);
    display.tell("stopping", "Stopping " + run->root + ", as soon as the controller hears it.");
    const int status = follow_run(*run, display, signals, OnInterrupt::LeaveStopping);
    run->link.reset(); // before the share in the links ends
    return status;
}

} // namespace Frontend
