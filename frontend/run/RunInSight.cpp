// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/RunInSight.h"

#include "frontend/ExitStatus.h"
#include "frontend/run/LinkedRun.h"
#include "frontend/run/StepWords.h"

#include <algorithm>
#include <vector>

namespace Frontend {

using Tavro::LinkManager;

LinkUse::LinkUse()
    : m_result(LinkManager::Startup())
{
}

std::string LinkUse::complaint() const
{
    const std::string reason = std::string("no links: ") + LinkManager::GetResultString(m_result);
    if (m_result != LinkManager::TooManyManagers)
        return reason;
    return reason + ". They have room for " + std::to_string(LinkManager::GetMaxNumLinkManagers())
        + " programs: two of each run, and each vortik that shows one; it is there again as soon "
          "as one of them ends";
}

std::string LinkUse::lack_of_room() const
{
    std::vector<LinkManager::LinkDebugInfo> links;
    if (LinkManager::GetLinkDebugInfo(links) != LinkManager::Success)
        return ""; // the run itself will meet with that
    std::uint32_t runs = 0;
    std::uint32_t taken = 1; // by this process
    for (const auto& link : links) {
        if (link.m_nAttachments == 0 || link.m_nDataSize != sizeof(VRK::GUIRecord))
            continue;
        ++runs;
        taken += link.m_nAttachments + 1; // its step program has a link of its own
    }
    constexpr std::uint32_t kNeeded = 3; // controller, step program, and who stops one of all these
    if (std::max(taken, LinkManager::GetNumAttachedManagers()) + kNeeded
        <= LinkManager::GetMaxNumLinkManagers())
        return "";
    return "the links have no room for another run beside the " + std::to_string(runs)
        + " that are under way; `vortik status` lists them";
}

LinkUse::~LinkUse() { LinkManager::Shutdown(); }

namespace {

bool link_lives(const VRK::GUIConLink* link, const RunRecord& record, long long since)
{
    LinkManager::Result result {};
    const auto progress = link == nullptr ? std::nullopt : read_progress(*link, result);
    if (!progress)
        return false;
    const long long age = seconds_now() - std::max(progress->touched, since);
    return age <= kSecondsToDeath && is_under_way(*progress, record, age);
}

} // namespace

std::optional<Tavro::ChildEnd> RunInSight::controller_end() const
{
    if (isOurChild)
        return Tavro::child_end(record.controller);
    if (linkedSince ? link_lives(link.get(), record, *linkedSince) : controller_lives(record))
        return std::nullopt;
    return Tavro::ChildEnd {};
}

std::unique_ptr<VRK::GUIConLink> attach_to_run(
    const std::string& root, const RunRecord& record, LinkManager::Result& result)
{
    // By the number first: a link of a former run with this key may linger for half a minute after
    // its owners were killed, and a search by the key would find it if its number is the lower one.
    const Tavro::FilePath key = link_key(root);
    std::vector<LinkManager::LinkDebugInfo> links;
    result = LinkManager::GetLinkDebugInfo(links);
    if (result != LinkManager::Success)
        return nullptr;
    std::unique_ptr<VRK::GUIConLink> link;
    if (record.link < links.size() && links[record.link].m_nAttachments > 0
        && is_key_of(links[record.link].m_strKey, root)) {
        link = std::make_unique<VRK::GUIConLink>(record.link, result);
    } else {
        bool attached = false;
        link = std::make_unique<VRK::GUIConLink>(key, attached, result);
    }
    return result == LinkManager::Success ? std::move(link) : nullptr;
}

Ending ending_of(
    const RunRecord& record, const Tavro::ChildEnd& how, const Progress& last, int published)
{
    Ending ending { Outcome::Died, completion_word(record.completionFile).value_or(0), how, last };
    const bool isLast = published < 0 || published == VRK::StepComplete;
    if (isLast && (ending.word == 0 || ending.word == VRK::StepNotFinished))
        ending.word = published;
    if (ending.word == VRK::StepComplete)
        ending.outcome = Outcome::Finished;
    else if (ending.word == VRK::StepStopped)
        ending.outcome = Outcome::Stopped;
    else if (ending.word < 0 && ending.word != VRK::StepNotFinished)
        ending.outcome = Outcome::Failed;
    return ending;
}

const char* outcome_name(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Finished:
        return "finished";
    case Outcome::Stopped:
        return "stopped";
    case Outcome::Failed:
        return "failed";
    case Outcome::Died:
        break;
    }
    return "died";
}

namespace {

std::string how_text(const Tavro::ChildEnd& how)
{
    using Kind = Tavro::ChildEnd::Kind;
    switch (how.kind) {
    case Kind::Exited:
        return "the controller ended with status " + std::to_string(how.value);
    case Kind::Signalled:
        return "the controller was killed by signal " + std::to_string(how.value);
    case Kind::Unknown:
        break;
    }
    return "the controller is gone without a word";
}

/// ", at: solver, step 3 of 20"; empty if nothing was seen of a step.
std::string place_text(const Progress& last)
{
    if (last.step <= 0)
        return "";
    std::string text = ", at: " + step_name(last.step);
    if (last.has_solver())
        text += ", step " + std::to_string(last.number) + " of " + std::to_string(last.total);
    return text;
}

} // namespace

std::string ending_text(const Ending& ending)
{
    switch (ending.outcome) {
    case Outcome::Finished:
        return "finished";
    case Outcome::Stopped:
        return "stopped" + place_text(ending.last);
    case Outcome::Failed:
        return "failed: " + step_name(ending.word);
    case Outcome::Died:
        break;
    }
    return "failed: " + how_text(ending.how)
        + (ending.word == 0 ? ", before it had read the case" : place_text(ending.last));
}

int exit_status_of(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Finished:
        return kFinished;
    case Outcome::Stopped:
        return kStopped;
    case Outcome::Failed:
    case Outcome::Died:
        break;
    }
    return kFailed;
}

} // namespace Frontend
