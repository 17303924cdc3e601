// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Progress.h"

#include "frontend/run/Json.h"
#include "frontend/run/StepWords.h"

#include <array>
#include <charconv>

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

/// How the figures are worded, from the form that explains itself to the one that fits.
enum class Form { Long, Short, Compact, Tight };

/// What is worth least is left out first.
enum Worth { Elapsed, SubStep, MaxResidual, TotalResidual, TimeLeft, StepNumber, StepName };

std::string residuals_text(const Progress& progress, Form form, bool both)
{
    const std::string total = number_text(progress.totalResidual, std::chars_format::scientific, 2);
    const std::string max = number_text(progress.maxResidual, std::chars_format::scientific, 2);
    if (form == Form::Long)
        return "total residual " + total + (both ? ", max residual " + max : "");
    const std::string word = form == Form::Tight ? "res " : both ? "residuals " : "residual ";
    return word + total + (both ? (form == Form::Short ? ", " : " ") + max : "");
}

/// All that is worth at least so much.
std::string text_of(const Progress& progress, const std::string& elapsed, Form form, int least)
{
    const bool narrow = form == Form::Compact || form == Form::Tight;
    std::string text = step_name(progress.step);
    const auto add = [&](Worth worth, const std::string& piece) {
        if (worth >= least)
            text += ", " + piece;
    };
    if (progress.has_solver()) {
        add(StepNumber,
            "step " + std::to_string(progress.number) + (narrow ? "/" : " of ")
                + std::to_string(progress.total));
        add(TotalResidual, residuals_text(progress, form, least <= MaxResidual));
        add(SubStep,
            (form == Form::Tight ? "sub " : "sub-step ")
                + number_text(progress.subStep, std::chars_format::fixed, 2));
    }
    if (knows_time_left(progress))
        add(TimeLeft,
            (narrow ? narrow_duration_text(progress.secondsLeft)
                    : duration_text(progress.secondsLeft))
                + " left");
    if (!elapsed.empty())
        add(Elapsed, elapsed);
    return text;
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
    std::string text = text_of(progress, elapsed, Form::Long, Elapsed);
    if (!columns)
        return text;
    // Words go before figures do; only what has passed is not worth a word.
    for (int least = Elapsed; least <= StepName && text.size() > *columns; ++least) {
        for (const Form form : { Form::Long, Form::Short, Form::Compact, Form::Tight }) {
            if (text.size() > *columns && (least > Elapsed || form == Form::Long))
                text = text_of(progress, elapsed, form, least);
        }
    }
    if (text.size() > *columns)
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
