// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/run/Progress.h"
#include "frontend/run/RunDirectory.h"
#include "links/GUIConLink.h"

#include <memory>
#include <optional>
#include <string>

namespace Frontend {

/// This process's share in the links, from its beginning to its end. A process has one.
class LinkUse {
public:
    LinkUse();
    ~LinkUse();
    LinkUse(const LinkUse&) = delete;
    LinkUse& operator=(const LinkUse&) = delete;
    LinkUse(LinkUse&&) = delete;
    LinkUse& operator=(LinkUse&&) = delete;

    [[nodiscard]] Tavro::LinkManager::Result result() const { return m_result; }
    /// What to say if there is no share: the reason and what to do.
    [[nodiscard]] std::string complaint() const;
    /// Why another run has no room in the links, with a place left for whoever stops one; empty if
    /// it has. Runs of which the step program has not come up yet count as well.
    [[nodiscard]] std::string lack_of_room() const;

private:
    Tavro::LinkManager::Result m_result;
};

/// A run as this process sees it.
struct RunInSight {
    std::string root;
    RunRecord record;
    std::unique_ptr<VRK::GUIConLink> link; ///< null if there is none to attach to
    bool isOurChild = false; ///< whether this process has started the controller
    /// For a run of which the controller's process is not known: when it was seen first, in seconds
    /// since 1970. Its life and its end are those that its link tells.
    std::optional<long long> linkedSince = std::nullopt;

    /// How the controller has ended; nothing while it lives. To be asked no more after an answer.
    [[nodiscard]] std::optional<Tavro::ChildEnd> controller_end() const;
};

/// Attaches to the link of a run that somebody has started. Null, with the reason, if there is
/// none.
[[nodiscard]] std::unique_ptr<VRK::GUIConLink> attach_to_run(
    const std::string& root, const RunRecord& record, Tavro::LinkManager::Result& result);

/// How a run has ended.
enum class Outcome { Finished, Stopped, Failed, Died };

struct Ending {
    Outcome outcome = Outcome::Died;
    int word = 0; ///< in the completion file; 0 if it held none
    Tavro::ChildEnd how; ///< of the controller
    Progress last; ///< seen before
};

/// By the completion file, which is the controller's last word, or where it could not be written by
/// the step published last.
[[nodiscard]] Ending ending_of(
    const RunRecord& record, const Tavro::ChildEnd& how, const Progress& last, int published = 0);

/// "finished", "stopped", "failed", "died": for machines.
[[nodiscard]] const char* outcome_name(Outcome outcome);
/// A sentence for people, without the end of it.
[[nodiscard]] std::string ending_text(const Ending& ending);
/// Of the program that has followed the run to its end.
[[nodiscard]] int exit_status_of(Outcome outcome);

} // namespace Frontend
