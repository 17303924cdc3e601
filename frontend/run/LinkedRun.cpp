// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/LinkedRun.h"

#include "tavrobase/SystemUtilities.h"

#include <chrono>
#include <filesystem>
#include <thread>
#include <vector>

namespace Frontend {

namespace {

using Tavro::LinkManager;

constexpr long long kTurn = 4; // seconds; the controller touches its link every three
constexpr auto kLook = std::chrono::milliseconds(50);

bool is_last(const Progress& progress)
{
    return progress.step < 0 || progress.step == VRK::StepComplete;
}

std::optional<Progress> look_at(unsigned link)
{
    LinkManager::Result result {};
    const VRK::GUIConLink attached(link, result);
    if (result != LinkManager::Success)
        return std::nullopt;
    return read_progress(attached, result);
}

/// Whether a controller touches the link again, of which the last one is known to be dead. Nothing
/// but that tells: the number may have come to another front end at once, since the block goes with
/// the last of its users and the next one counts anew.
bool is_touched_again(unsigned link, long long touched)
{
    while (seconds_now() <= touched + kTurn) {
        const auto progress = look_at(link);
        if (!progress || is_last(*progress))
            return false;
        if (progress->touched != touched)
            return true;
        std::this_thread::sleep_for(kLook);
    }
    return false;
}

/// Whether the link may be what is left of the remembered run, whose controller is dead.
bool is_remembered(unsigned link, const std::optional<RunRecord>& record)
{
    return record && record->link == link && record->controller > 0 && is_here(*record);
}

std::optional<LinkedRun> run_of_link(unsigned link, const std::optional<RunRecord>& record)
{
    const auto progress = look_at(link);
    if (!progress)
        return std::nullopt;
    const long long age = seconds_now() - progress->touched;
    const bool goesOn = is_half_remembered(link, record) ? is_under_way(*progress, *record, age)
                                                         : !is_last(*progress);
    if (!goesOn)
        return std::nullopt;
    LinkedRun run { link, false, *progress };
    // A stamp from the future was written under another clock.
    run.isTouched = progress->touched == 0 ? progress->step > 0 // it is before its first turn
                                           : age >= 0 && age <= kSecondsToDeath;
    if (!is_remembered(link, record))
        return run;
    if (run.isTouched && is_touched_again(link, progress->touched))
        return run;
    return std::nullopt;
}

/// For how many seconds the remembered run has been the one of its directory: none began in it
/// beside a living one. Nothing if it is of another machine or nobody has noted when it began.
std::optional<double> seconds_since(const std::optional<RunRecord>& record)
{
    if (!record || record->since == 0 || !is_here(*record))
        return std::nullopt;
    using Clock = std::filesystem::file_time_type::clock;
    const Clock::duration since(static_cast<Clock::rep>(record->since));
    return std::chrono::duration<double>(Clock::now().time_since_epoch() - since).count();
}

/// Numbers of the links under the run's key whose owner has given a sign of life. Those that have
/// given none since the remembered run began are what killed ones before it have left.
std::vector<unsigned> links_of(const std::string& root, const std::optional<RunRecord>& record)
{
    std::vector<LinkManager::LinkDebugInfo> links;
    std::vector<double> managerAges;
    std::vector<double> ages;
    if (LinkManager::GetLinkDebugInfo(links) != LinkManager::Success
        || LinkManager::GetHeartbeatAges(managerAges, ages) != LinkManager::Success)
        return {};
    const auto since = seconds_since(record);
    std::vector<unsigned> found;
    for (unsigned link = 0; link < links.size(); ++link) {
        if (links[link].m_nAttachments > 0 && links[link].m_nDataSize == sizeof(VRK::GUIRecord)
            && ages[link] <= static_cast<double>(kSecondsToDeath)
            && (!since || record->link == link || ages[link] < *since)
            && is_key_of(links[link].m_strKey, root))
            found.push_back(link);
    }
    return found;
}

} // namespace

long long seconds_now()
{
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

std::optional<LinkedRun> linked_run(const std::string& root, const std::optional<RunRecord>& record)
{
    std::optional<LinkedRun> found;
    for (const unsigned link : links_of(root, record)) {
        const auto run = run_of_link(link, record);
        if (run && (!found || run->isTouched))
            found = run;
    }
    return found;
}

bool is_under_way(const Progress& progress, const RunRecord& record, long long sinceTouch)
{
    if (!is_last(progress))
        return true;
    if (record.completionFile.empty() || sinceTouch > kSecondsToDeath)
        return false;
    const int word = completion_word(record.completionFile).value_or(VRK::StepNotFinished);
    return word == VRK::StepNotFinished;
}

bool is_half_remembered(unsigned link, const std::optional<RunRecord>& record)
{
    return record && record->link == link && record->controller < 1 && is_here(*record);
}

RunRecord record_of(const LinkedRun& run, const std::optional<RunRecord>& remembered)
{
    if (is_half_remembered(run.link, remembered))
        return *remembered;
    RunRecord record;
    record.host = Tavro::GetHostname();
    record.link = run.link;
    using Clock = std::filesystem::file_time_type::clock;
    record.since = static_cast<long long>(Clock::now().time_since_epoch().count());
    return record;
}

} // namespace Frontend
