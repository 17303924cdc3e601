// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Follow.h"

#include "frontend/ExitStatus.h"
#include "frontend/run/EarlierRun.h"
#include "frontend/run/Json.h"
#include "frontend/run/LinkedRun.h"
#include "frontend/run/LogEnds.h"
#include "frontend/run/StepWords.h"
#include "tavrobase/StringUtilities.h"

#include <algorithm>
#include <chrono>
#include <iostream>

namespace Frontend {

namespace {

constexpr unsigned kLook = 100; // milliseconds between two looks at a run
constexpr auto kLastSteps = std::chrono::seconds(10); // for step programs that have heard a stop

bool is_running_step(const Progress& progress)
{
    return progress.step > 0 && progress.step != VRK::StepComplete;
}

void tell_programs_left(const std::string& root, const RunRecord& record, Display& display)
{
    const auto left = step_programs(record);
    if (left.empty())
        return;
    display.tell("programs_left",
        "Still running: " + names_of(left) + ". `vortik stop " + Tavro::typed_word(root)
            + "` ends it.",
        "," + json_member("programs", names_of(left)));
}

void tell_logs(
    const std::string& root, const RunRecord& record, const Ending& ending, Display& display)
{
    const int step = ending.outcome == Outcome::Failed ? ending.word : ending.last.step;
    for (const LogEnd& log : log_ends(root, record, logs_of_step(step))) {
        display.tell("log",
            "The end of " + log.file + ":\n  " + Tavro::MergeString(log.lines, "\n  "),
            "," + json_member("file", log.file) + "," + json_member("lines", log.lines));
    }
}

/// What a program that cannot write cannot tell in its log either.
void tell_place(const std::string& root, Display& display)
{
    const std::string lack = lack_of_place(root);
    if (!lack.empty())
        display.tell("place", lack, "," + json_member("directory", root));
}

void tell_results(const std::string& root, Display& display)
{
    const auto directories = result_directories(root);
    if (directories.empty())
        return;
    display.tell("results", "Results in " + root + ": " + Tavro::MergeString(directories, ", "),
        "," + json_member("directories", directories));
}

void tell_restart(
    const std::string& root, const RunRecord& record, const Progress& last, Display& display)
{
    const auto point = latest_restart(root, record.caseName);
    if (!point || (last.total > 0 && static_cast<long long>(point->step) >= last.total))
        return; // nothing is left to do
    if (is_adaptation_cut_off(root, record.caseName)) {
        display.tell("no_restart",
            "The grid was just being adapted, and the restart file of step "
                + std::to_string(point->step)
                + " belongs to the grid before that: --restart cannot go on from it.",
            "," + json_member("step_number", static_cast<long long>(point->step)));
        return;
    }
    display.tell("restart",
        "`vortik run " + Tavro::typed_word(record.caseFile) + " --restart` goes on from step "
            + std::to_string(point->step) + ".",
        "," + json_member("step_number", static_cast<long long>(point->step)));
}

/// Whether the solver failed with something new to go on from; else it would only fail again.
bool can_go_on(const Ending& ending, const std::string& root, const RunRecord& record)
{
    const auto point = latest_restart(root, record.caseName);
    if (!point || write_time(point->file).value_or(0) < record.since)
        return false;
    const int step = ending.outcome == Outcome::Failed ? -ending.word : ending.last.step;
    return step == VRK::StepSolver || step == VRK::StepAdaptiveSolver;
}

std::string detached_text(const RunInSight& run)
{
    return "The run goes on by itself. `vortik watch " + Tavro::typed_word(run.root)
        + "` shows it again, `vortik stop " + Tavro::typed_word(run.root) + "` stops it.";
}

std::string capital(std::string sentence)
{
    if (!sentence.empty() && sentence.front() >= 'a' && sentence.front() <= 'z')
        sentence.front() = static_cast<char>(sentence.front() - 'a' + 'A');
    return sentence;
}

/// The loop around one run.
class Follower {
public:
    Follower(
        RunInSight& run, Display& display, Tavro::UserSignals& signals, OnInterrupt onInterrupt)
        : m_run(run)
        , m_display(display)
        , m_signals(signals)
        , m_onInterrupt(onInterrupt)
        , m_isToStop(onInterrupt == OnInterrupt::LeaveStopping)
        , m_signOfLife(seconds_now())
    {
    }

    int follow()
    {
        for (;;) {
            // Before the look at the link: what was published until then is seen.
            const auto end = m_run.controller_end();
            look();
            if (end)
                return conclude(*end);
            m_sawItLive = true;
            if (may_leave() && Tavro::output_is_abandoned()) {
                std::cerr << "vortik: nobody reads the output any more. " << detached_text(m_run)
                          << '\n';
                return m_onInterrupt == OnInterrupt::Leave ? kFinished : kStopped;
            }
            if ((may_leave() && m_signals.hung_up()) || (interrupted() && !ask_to_stop())) {
                tell_detached(m_run, m_display);
                return m_onInterrupt == OnInterrupt::Leave ? kFinished : kStopped;
            }
            if (m_interrupts == m_signals.interrupts()) // else there is another one to hear
                m_signals.wait(kLook);
        }
    }

private:
    void look()
    {
        if (m_run.link == nullptr)
            return;
        Tavro::LinkManager::Result result {};
        const auto progress = read_progress(*m_run.link, result);
        if (!progress) {
            m_run.link.reset();
            m_display.tell("link_lost",
                std::string("The link to the controller is gone (")
                    + Tavro::LinkManager::GetResultString(result)
                    + "). Its end will be seen, its progress will not.");
            return;
        }
        m_published = progress->step;
        if (is_running_step(*progress)) {
            m_last = *progress;
            m_display.show(*progress);
            look_for_life(*progress);
        }
    }

    void look_for_life(const Progress& progress)
    {
        const std::string controller = m_run.record.controller < 1
            ? "The controller"
            : "The controller (process " + std::to_string(m_run.record.controller) + ")";
        switch (m_signOfLife.look(seconds_now(), progress.touched)) {
        case SignOfLife::News::None:
            break;
        case SignOfLife::News::Silent:
            m_display.tell("silent",
                controller + " has not touched its link for " + duration_text(SignOfLife::kPatience)
                    + ": it is suspended, or the machine has no time for it.");
            break;
        case SignOfLife::News::Back:
            m_display.tell("not_silent", controller + " touches its link again.");
            break;
        }
    }

    /// Our own attachment keeps the link of a new run until the controller has its own.
    [[nodiscard]] bool may_leave() const
    {
        return !m_run.isOurChild || m_run.link == nullptr || m_published != 0;
    }

    /// Whether there has been a Ctrl-C since the last question.
    bool interrupted()
    {
        const unsigned interrupts = m_signals.interrupts();
        const bool news = interrupts > m_interrupts;
        // Two at once, as from an impatient key, are two questions.
        m_interrupts += news ? 1 : 0;
        return news;
    }

    /// False if the run is to be left instead.
    bool ask_to_stop()
    {
        if (m_onInterrupt != OnInterrupt::Stop)
            return false;
        m_onInterrupt = OnInterrupt::LeaveStopping;
        const auto result
            = m_run.link == nullptr ? Tavro::LinkManager::NotAttached : m_run.link->SetStop(true);
        if (result == Tavro::LinkManager::Success) {
            m_display.tell("stopping",
                "Stopping, as soon as the controller hears it. Ctrl-C again leaves the run to "
                "itself.");
        } else {
            m_display.tell("not_stopping",
                std::string("The controller cannot be asked to stop (")
                    + Tavro::LinkManager::GetResultString(result)
                    + "). Ctrl-C again leaves the run to itself.");
        }
        return true;
    }

    int conclude(const Tavro::ChildEnd& how)
    {
        const Ending ending = ending_of(m_run.record, how, m_last, m_published);
        m_display.end(ending.outcome == Outcome::Finished);
        if (ending.outcome == Outcome::Stopped)
            wait_for_step_programs();
        // Of a run that only its link tells of, what is remembered is another one.
        if (m_sawItLive && !m_run.record.completionFile.empty()
            && step_programs(m_run.record).empty())
            note_end(m_run.root);
        int status = exit_status_of(ending.outcome);
        if (m_isToStop && status == kStopped) // what was asked for is that it runs no more
            status = kFinished;
        tell_ending(m_run.root, m_run.record, ending, status, m_display);
        return status;
    }

    /// The controller does not wait for a program that it has asked to stop.
    void wait_for_step_programs()
    {
        const auto deadline = std::chrono::steady_clock::now() + kLastSteps;
        while (!step_programs(m_run.record).empty() && !interrupted() && !m_signals.hung_up()
            && std::chrono::steady_clock::now() < deadline)
            m_signals.wait(kLook);
    }

    RunInSight& m_run;
    Display& m_display;
    Tavro::UserSignals& m_signals;
    OnInterrupt m_onInterrupt;
    bool m_isToStop; ///< and has been asked to, before it was followed
    SignOfLife m_signOfLife;
    Progress m_last;
    int m_published = 0;
    unsigned m_interrupts = 0;
    bool m_sawItLive = false;
};

} // namespace

SignOfLife::News SignOfLife::look(long long now, long long touched)
{
    // A stamp from the future was written under another clock and tells nothing. The first one may
    // be older than our look: a controller that has been silent for long is reported at once.
    if (touched > 0 && touched <= now && (touched > m_last || !m_wasTouched)) {
        m_last = touched;
        m_wasTouched = true;
        if (m_silent) {
            m_silent = false;
            return News::Back;
        }
    }
    if (m_silent || now - m_last < kPatience)
        return News::None;
    m_silent = true;
    return News::Silent;
}

void tell_detached(const RunInSight& run, Display& display)
{
    display.end(false);
    display.tell("detached", detached_text(run), "," + json_member("directory", run.root));
}

void tell_ending(const std::string& root, const RunRecord& record, const Ending& ending, int status,
    Display& display)
{
    display.tell("end", capital(ending_text(ending)) + ".",
        "," + json_member("outcome", outcome_name(ending.outcome)) + ","
            + json_member("completion", ending.word) + "," + json_member("exit_status", status));
    switch (ending.outcome) {
    case Outcome::Finished:
        tell_results(root, display);
        break;
    case Outcome::Stopped:
        tell_programs_left(root, record, display);
        tell_restart(root, record, ending.last, display);
        break;
    case Outcome::Failed:
    case Outcome::Died:
        tell_logs(root, record, ending, display);
        tell_place(root, display);
        if (can_go_on(ending, root, record))
            tell_restart(root, record, ending.last, display);
        tell_programs_left(root, record, display);
        break;
    }
}

int follow_run(
    RunInSight& run, Display& display, Tavro::UserSignals& signals, OnInterrupt onInterrupt)
{
    return Follower(run, display, signals, onInterrupt).follow();
}

} // namespace Frontend
