// SPDX-License-Identifier: Apache-2.0
#include "frontend/CaseText.h"
#include "frontend/ExitStatus.h"
#include "frontend/run/Cleaning.h"
#include "frontend/run/EarlierRun.h"
#include "frontend/run/Follow.h"
#include "frontend/run/Json.h"
#include "frontend/run/Obstacles.h"
#include "frontend/run/RunCommands.h"
#include "frontend/run/RunStart.h"

#include <iostream>
#include <utility>

namespace Frontend {

namespace {

constexpr unsigned kLook = 50; // milliseconds

int complain(const std::string& what, int status)
{
    std::cerr << "vortik: " << what << '\n';
    return status;
}

void tell_cleaning(const PreparedRun& run, Display& display)
{
    if (!run.input.m_bRestart) {
        const auto cleaned = results_to_be_cleaned(run.root, run.input.m_strCaseName);
        std::vector<std::string> directories;
        directories.reserve(cleaned.size());
        for (const Results& one : cleaned)
            directories.push_back(one.directory);
        if (!cleaned.empty())
            display.tell("cleaning",
                "Cleaning the results of an earlier run in " + run.root + ": "
                    + results_text(cleaned),
                "," + json_member("directories", directories) + ","
                    + json_member("files", files_of(cleaned)));
    }
    const auto replaced = joined(
        cards_to_be_replaced(run.root, run.input), input_to_be_replaced(run.root, run.input));
    if (!replaced.empty())
        display.tell("replacing", "Writing anew: " + results_text(replaced),
            "," + json_member("files", files_of(replaced)));
}

void tell_start(const RunInSight& started, const PreparedRun& run, Display& display)
{
    const std::string from
        = run.input.m_bRestart ? ", from " + run.input.m_strRestartFile : std::string();
    display.tell("started",
        "Running " + run.input.m_strCaseName + " in " + run.root + from + " (controller: process "
            + std::to_string(started.record.controller) + ")",
        "," + json_member("case", run.input.m_strCaseName) + ","
            + json_member("directory", run.root) + ","
            + json_member("controller", started.record.controller));
}

/// Our own attachment keeps the link until the controller has its own, so we stay until then.
bool wait_for_attachment(
    const RunInSight& run, Tavro::UserSignals& signals, std::optional<Tavro::ChildEnd>& end)
{
    for (;;) {
        end = run.controller_end();
        if (end)
            return false;
        Tavro::LinkManager::Result result {};
        const auto progress = read_progress(*run.link, result);
        if (!progress || progress->step != 0)
            return true;
        signals.wait(kLook);
    }
}

int detach_from(RunInSight& run, Display& display, Tavro::UserSignals& signals)
{
    std::optional<Tavro::ChildEnd> end;
    if (wait_for_attachment(run, signals, end)) {
        tell_detached(run, display);
        return kFinished;
    }
    const Ending ending = ending_of(run.record, *end, {});
    const int status = exit_status_of(ending.outcome);
    tell_ending(run.root, run.record, ending, status, display);
    return status;
}

} // namespace

int run_command(const RunOptions& options)
{
    Diagnostics diagnostics;
    std::vector<std::string> files;
    auto input = read_case_text(options.path, diagnostics, files);
    diagnostics.print(std::cerr);
    if (!input)
        return kBadInput;
    std::string reason;
    auto prepared
        = prepare_run(case_file(options.path), std::move(*input), options.restart, reason);
    if (!prepared)
        return complain(reason, kBadInput);
    prepared->inputs = std::move(files);
    // Two that are started at once must not both find the directory free.
    std::optional<Tavro::Claim> claim(std::in_place, prepared->root);
    if (!claim->granted())
        return complain("another run is just beginning in " + prepared->root + "; `vortik watch "
                + Tavro::typed_word(prepared->root) + "` will show it",
            kBadInput);
    Tavro::UserSignals signals;
    Display display(options.json);
    const LinkUse links;
    if (links.result() != Tavro::LinkManager::Success)
        return complain(links.complaint(), kFailed);
    if (reason = obstacle(*prepared, options.force); !reason.empty())
        return complain(reason, kBadInput);
    if (options.restart && !options.force
        && is_adaptation_cut_off(prepared->root, prepared->input.m_strCaseName))
        return complain("the run in " + prepared->root + " ended while it adapted its grid, and "
                + prepared->input.m_strRestartFile
                + " belongs to the grid before that. Begin a new run without --restart; --force "
                  "goes on all the same",
            kBadInput);
    if (reason = lack_of_programs(*prepared); !reason.empty())
        return complain(reason, kFailed);
    if (reason = links.lack_of_room(); !reason.empty())
        return complain(reason, kFailed);
    if (signals.interrupts() > 0 || signals.hung_up())
        return complain(
            "asked to end before the run had begun; nothing has been changed", kStopped);
    if (const std::string doubt = doubt_about_restart(*prepared); !doubt.empty())
        display.tell("other_case", doubt, "," + json_member("parts", prepared->changed));
    reason.clear();
    auto run = start_run(
        *prepared, [&] { tell_cleaning(*prepared, display); }, reason);
    if (!reason.empty())
        complain(reason, kFailed);
    if (!run)
        return kFailed;
    claim.reset(); // what is remembered of the run keeps others away from now on
    tell_start(*run, *prepared, display);
    display.begin_run();
    if (options.detach)
        return detach_from(*run, display, signals);
    return follow_run(*run, display, signals, OnInterrupt::Stop);
}

} // namespace Frontend
