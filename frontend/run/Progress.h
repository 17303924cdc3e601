// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "links/GUIConLink.h"

#include <optional>
#include <string>

namespace Frontend {

/// What the controller publishes, in one piece.
struct Progress {
    int step = 0; ///< 0: nothing published yet
    int number = -1; ///< time step that the solver has reached; -1 if no solver runs
    int total = 0;
    double totalResidual = 0.0;
    double maxResidual = 0.0;
    double subStep = 0.0;
    int secondsLeft = 0; ///< means nothing before the solver has got somewhere
    long long touched = 0; ///< seconds since 1970 of the controller's last sign of life

    /// Whether the figures of the solver mean anything.
    [[nodiscard]] bool has_solver() const;
    /// Whether the same is to be shown; a new sign of life alone shows nothing.
    [[nodiscard]] bool shows_the_same(const Progress& other) const;
};

/// Reads the whole record at once, so that the figures belong together; nothing, and the reason, if
/// there is no link.
[[nodiscard]] std::optional<Progress> read_progress(
    const VRK::GUIConLink& link, Tavro::LinkManager::Result& result);

/// "solver, step 3 of 20, total residual 7.5e-01, ..., 12 s left". If `columns` is given, shorter
/// words are used until it fits, and, where there are none, what matters least is left out.
[[nodiscard]] std::string progress_text(const Progress& progress,
    std::optional<unsigned> columns = std::nullopt, const std::string& elapsed = "");

/// The members of a JSON object, without its braces.
[[nodiscard]] std::string progress_members(const Progress& progress);

} // namespace Frontend
