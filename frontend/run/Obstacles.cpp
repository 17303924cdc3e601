// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Obstacles.h"

#include "frontend/run/Cleaning.h"
#include "frontend/run/EarlierRun.h"
#include "frontend/run/LinkedRun.h"
#include "frontend/run/OwnFiles.h"
#include "links/ControllerStep.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/Surveillance.h"

#include <optional>
#include <vector>

namespace Frontend {

namespace {

bool occupied(const std::string& path) { return Tavro::IsOccupied(Tavro::AsWritten(path)); }

std::string how_to_attach(const std::string& root)
{
    return "`vortik watch " + Tavro::typed_word(root) + "` shows it, `vortik stop "
        + Tavro::typed_word(root) + "` stops it";
}

/// A run that is under way, whoever began it, and what one has left behind.
std::string life_in(const std::string& root, const std::optional<RunRecord>& record, bool force)
{
    if (record && controller_lives(*record))
        return "a run is under way in " + root + " (controller: process "
            + std::to_string(record->controller) + "); " + how_to_attach(root);
    if (record) {
        const auto left = step_programs(*record);
        if (!left.empty())
            return "of an earlier run in " + root + " there is still running: " + names_of(left)
                + "; `vortik stop " + Tavro::typed_word(root) + "` ends it";
    }
    const auto linked = linked_run(root, record);
    if (!linked)
        return "";
    const std::string link = "link " + std::to_string(linked->link);
    if (linked->isTouched)
        return (is_half_remembered(linked->link, record)
                       ? "a run is under way in "
                       : "a run that another front end has begun is under way in ")
            + root + " (" + link + "); " + how_to_attach(root);
    return force ? ""
                 : "a front end has a link for " + root + " (" + link
            + "), and no controller is to be seen on it. Of one that was killed it is gone after "
              "half a minute; --force begins a run all the same";
}

constexpr const char* kAdvice = ". Move away what is to be kept; --force begins all the same";

/// What a run does to files that it cleans and to those that it writes anew, if to any.
std::string deed(bool cleans, bool replaces)
{
    return cleans && replaces ? "remove or replace" : cleans ? "remove" : "replace";
}

/// Files that a run would take from somebody though an earlier one is known.
std::string harm_beside(const PreparedRun& run, const RunRecord& record)
{
    const bool restart = run.input.m_bRestart;
    const auto cleaned = restart ? std::vector<Results> {}
                                 : strange_results(run.root, record,
                                     results_to_be_cleaned(run.root, run.input.m_strCaseName));
    const auto cards = strange_cards(run.root, record, cards_to_be_replaced(run.root, run.input));
    const auto named = strange_input(run.root, record, input_to_be_replaced(run.root, run.input));
    std::vector<std::string> harms;
    if (!cleaned.empty() || !cards.empty())
        harms.push_back("files in " + run.root + " are not as its earlier run left them, and "
            + (restart ? "this" : "a new") + " one would " + deed(!cleaned.empty(), !cards.empty())
            + " them: " + some_of(joined(cleaned, cards)));
    if (!named.empty())
        harms.push_back("the case would replace "
            + std::string(files_of(named).size() == 1 ? "a file" : "files")
            + " that no run has written: " + some_of(named));
    return harms.empty() ? "" : Tavro::MergeString(harms, "; ") + kAdvice;
}

/// Files that a run would take from somebody else.
std::string harm_of(const PreparedRun& run, const std::optional<RunRecord>& record)
{
    if (record)
        return harm_beside(run, *record);
    const auto input = input_to_be_replaced(run.root, run.input);
    // Whoever goes on with a run that is not known here means its files too.
    const bool restart = run.input.m_bRestart;
    const auto cleaned = restart ? std::vector<Results> {}
                                 : results_to_be_cleaned(run.root, run.input.m_strCaseName);
    const auto replaced
        = restart ? input : joined(cards_to_be_replaced(run.root, run.input), input);
    if (cleaned.empty() && replaced.empty())
        return "";
    std::string text = "no earlier run of vortik is known in " + run.root + ", and "
        + (restart ? "this" : "a new") + " one would ";
    if (!cleaned.empty())
        text += "remove " + some_of(cleaned);
    if (!replaced.empty())
        text += (cleaned.empty() ? "replace " : ", and replace ") + some_of(replaced);
    return text + kAdvice;
}

/// An input of the case of which nothing would be left.
std::string lost_input(const PreparedRun& run)
{
    std::vector<std::string> places { run.completionFile, binary_case(run.root) };
    for (const std::string& file : files_of(input_to_be_replaced(run.root, run.input)))
        places.push_back(below(run.root, file));
    for (const std::string& place : places) {
        for (const std::string& input : run.inputs) {
            if (Tavro::LeadToOneFile(place, input))
                return "the run would replace " + place
                    + ", from which the case is made; name another file in the case";
        }
    }
    return "";
}

/// Files in the way that only a run's own may be.
std::string wrong_file(const PreparedRun& run, const std::optional<RunRecord>& record)
{
    if (occupied(run.completionFile) && !completion_word(run.completionFile))
        return run.completionFile
            + " is in the place of the completion file and is none; --force replaces it";
    if (!record && occupied(binary_case(run.root)))
        return binary_case(run.root)
            + " is in the place of the controller's case file; --force replaces it";
    return "";
}

std::string parts_text(const std::vector<std::string>& parts)
{
    return Tavro::MergeString(parts, ", ");
}

} // namespace

std::string obstacle(const PreparedRun& run, bool force)
{
    const auto record = recall_run(run.root);
    if (std::string life = life_in(run.root, record, force); !life.empty())
        return life;
    if (std::string lost = lost_input(run); !lost.empty() || force)
        return lost;
    if (record && !is_here(*record)
        && completion_word(record->completionFile) == VRK::StepNotFinished)
        return "a run in " + run.root + " was begun on " + record->host
            + " and has not ended, as far as can be seen from here; --force begins another";
    if (std::string wrong = wrong_file(run, record); !wrong.empty())
        return wrong;
    if (!run.changed.empty())
        return "the run that --restart goes on with has been built from other "
            + parts_text(run.changed)
            + " and keeps them. Begin a new run without --restart; --force goes on all the same";
    return harm_of(run, record);
}

std::string doubt_about_restart(const PreparedRun& run)
{
    if (run.changed.empty())
        return "";
    return "The case has other " + parts_text(run.changed)
        + " than the run that it goes on with, which keeps those that it was built from.";
}

std::string lack_of_programs(const PreparedRun& run)
{
    const std::string directory = program_directory();
    const std::vector<std::string> missing = missing_programs(directory, run.input);
    std::string text;
    if (!is_program(Tavro::program_file(directory + kControllerName)))
        text = std::string("there is no ") + kControllerName + " in " + directory
            + ", the directory of vortik, where it is looked for";
    if (missing.empty())
        return text;
    const bool several = missing.size() > 1;
    return text + (text.empty() ? "" : "; ") + "there " + (several ? "are" : "is") + " no "
        + Tavro::MergeString(missing, ", ") + " in " + directory
        + ". Step programs are products of "
        + "their own; the controller looks for them beside vortik. Put them there, or links to "
          "them";
}

} // namespace Frontend
