// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Progress.h"

#include "frontend/run/Json.h"
#include "frontend/run/StepWords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <vector>

namespace Frontend {

namespace {

std::string number_text(double number, std::chars_format format, int digits)
{
    std::array<char, 400> text; // the largest of doubles, written out
    const auto [end, error]
        = std::to_chars(text.data(), text.data() + text.size(), number, format, digits);
    return error == std::errc {} ? std::string(text.data(), end) : "";
}

// Until then the field holds nothing, or what an estimate from nothing gives.
bool knows_time_left(const Progress& progress)
{
    return progress.has_solver() && progress.number + progress.subStep > 0.0
        && progress.secondsLeft > 0;
}

struct Piece {
    std::string text;
    int worth; ///< pieces of little worth are left out first
};

std::size_t length(const std::vector<Piece>& pieces)
{
    std::size_t sum = 0;
    for (const Piece& piece : pieces)
        sum += piece.text.size() + 2;
    return sum - 2;
}

std::vector<Piece> pieces_of(const Progress& progress, const std::string& elapsed)
{
    std::vector<Piece> pieces { { step_name(progress.step), 9 } };
    if (progress.has_solver()) {
        using std::chars_format;
        pieces.push_back(
            { "step " + std::to_string(progress.number) + " of " + std::to_string(progress.total),
                8 });
        pieces.push_back(
            { "total residual " + number_text(progress.totalResidual, chars_format::scientific, 2),
                6 });
        pieces.push_back(
            { "max residual " + number_text(progress.maxResidual, chars_format::scientific, 2),
                5 });
        pieces.push_back(
            { "sub-step " + number_text(progress.subStep, chars_format::fixed, 2), 4 });
    }
    if (knows_time_left(progress))
        pieces.push_back({ duration_text(progress.secondsLeft) + " left", 7 });
    if (!elapsed.empty())
        pieces.push_back({ elapsed, 3 });
    return pieces;
}

} // namespace

bool Progress::shows_the_same(const Progress& other) const
{
    return step == other.step && number == other.number && total == other.total
        && totalResidual == other.totalResidual && maxResidual == other.maxResidual
        && subStep == other.subStep;
}

// A link that another front end has made may hold a 0 before the controller's first turn.
bool Progress::has_solver() const
{
    return (step == VRK::StepSolver || step == VRK::StepAdaptiveSolver) && number >= 0;
}

std::optional<Progress> read_progress(
    const VRK::GUIConLink& link, Tavro::LinkManager::Result& result)
{
    VRK::GUIRecord record {};
    result = Tavro::LinkManager::GetLinkData(
        link.GetLinkID(), sizeof record, reinterpret_cast<char*>(&record));
    if (result != Tavro::LinkManager::Success)
        return std::nullopt;
    return Progress { record.step, record.nStepNumber, record.nTotalSteps,
        record.dTotalMassResidual, record.dMaxMassResidual, record.dSubStep, record.nTimeRemaining,
        record.tLastTouch };
}

std::string progress_text(
    const Progress& progress, std::optional<unsigned> columns, const std::string& elapsed)
{
    std::vector<Piece> pieces = pieces_of(progress, elapsed);
    while (columns && pieces.size() > 1 && length(pieces) > *columns) {
        pieces.erase(std::min_element(pieces.begin(), pieces.end(),
            [](const Piece& a, const Piece& b) { return a.worth < b.worth; }));
    }
    std::string text;
    for (const Piece& piece : pieces)
        text += (text.empty() ? "" : ", ") + piece.text;
    if (columns && text.size() > *columns)
        text.resize(*columns);
    return text;
}

std::string progress_members(const Progress& progress)
{
    std::string text = json_member("step", step_name(progress.step)) + ","
        + json_member("step_value", progress.step) + ","
        + json_member("total_steps", progress.total);
    if (progress.has_solver()) {
        text += "," + json_member("step_number", progress.number) + ","
            + json_member("total_mass_residual", progress.totalResidual) + ","
            + json_member("max_mass_residual", progress.maxResidual) + ","
            + json_member("sub_step", progress.subStep);
    }
    if (knows_time_left(progress))
        text += "," + json_member("seconds_left", progress.secondsLeft);
    return text;
}

} // namespace Frontend
