// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "frontend/run/Progress.h"
#include "frontend/run/RunDirectory.h"

#include <optional>
#include <string>

namespace Frontend {

/// A run of a directory as its link alone tells of it: another front end has begun it, or what was
/// remembered of it is lost.
struct LinkedRun {
    unsigned link = 0; ///< number of the front end's link
    /// Whether a controller touches the link. If not, its front end lives, and a controller may be
    /// about to begin, or be suspended or dead.
    bool isTouched = false;
    Progress progress;
};

/// Looks for a run that is under way in the directory but is not that of the record, whose
/// controller must not live. Where only time can tell a living controller from one that died a
/// moment ago, it waits for the next turn of the controller.
[[nodiscard]] std::optional<LinkedRun> linked_run(
    const std::string& root, const std::optional<RunRecord>& record);

/// Whether the step published last is not the run's last, or its controller has yet to write that
/// down, which takes it up to a turn. `sinceTouch` is the time since its last sign of life, in
/// seconds.
[[nodiscard]] bool is_under_way(
    const Progress& progress, const RunRecord& record, long long sinceTouch);

/// Whether the link is the one of a run that `vortik` began and whose controller's process it did
/// not come to note.
[[nodiscard]] bool is_half_remembered(unsigned link, const std::optional<RunRecord>& record);

/// The record of such a run, as far as it can be known: what is remembered, if `vortik` was killed
/// before it knew the controller's process.
[[nodiscard]] RunRecord record_of(const LinkedRun& run, const std::optional<RunRecord>& remembered);

/// Seconds since 1970.
[[nodiscard]] long long seconds_now();
/// After so many seconds without a touch a controller that nobody can look at is taken for dead, as
/// the links themselves do it.
constexpr long long kSecondsToDeath = 30;

} // namespace Frontend
