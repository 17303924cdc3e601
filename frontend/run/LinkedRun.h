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

/// The record of such a run, as far as it can be known: what is remembered, if `vortik` was killed
/// before it knew the controller's process.
[[nodiscard]] RunRecord record_of(const LinkedRun& run, const std::optional<RunRecord>& remembered);

/// Seconds since 1970.
[[nodiscard]] long long seconds_now();
/// After so many seconds without a touch a controller that nobody can look at is taken for dead, as
/// the links themselves do it.
constexpr long long kSecondsToDeath = 30;

} // namespace Frontend
