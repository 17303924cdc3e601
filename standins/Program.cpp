// SPDX-License-Identifier: Apache-2.0
#include "standins/Ending.h"
#include "standins/Refusal.h"
#include "standins/StartRecord.h"
#include "standins/Step.h"
#include "standins/cards/Numbers.h"
#include "tavrobase/Exception.h"
#include "tavrobase/FilePath.h"
#include "tavrobase/PathIdentity.h"

#include <cstdlib>
#include <exception>
#include <utility>

namespace Standins {

namespace {

constexpr const char* kThreadedEnding = "-omp";

std::string environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

// The log of a program bears one name in both of its variants.
std::string plain_name(const std::string& name)
{
    return name.substr(0, name.rfind(kThreadedEnding));
}

std::string working_directory()
{
    std::string directory = Tavro::getCurrentDirectory().Get();
    if (directory.size() > 1 && directory.ends_with('/'))
        directory.pop_back();
    return directory;
}

Settings settings_of(const std::string& name, const Start& start)
{
    Settings settings;
    const std::string record = environment("VORTIK_STANDIN_RECORD");
    if (!record.empty())
        record_start(record, start);
    if (const std::string pace = environment("VORTIK_STANDIN_PACE"); !pace.empty()) {
        const auto milliseconds = Numbers::unsigned_of(pace);
        if (!milliseconds)
            throw Refusal("VORTIK_STANDIN_PACE: " + pace + ": not a number of milliseconds");
        settings.m_pace = std::chrono::milliseconds(*milliseconds);
    }
    const auto wishes = parse_faults(environment("VORTIK_STANDIN_FAULT"));
    if (!wishes.empty()) {
        const unsigned int count = record.empty() ? 0 : recorded_starts(record, plain_name(name));
        settings.m_fault = fault_of_start(wishes, plain_name(name), count);
    }
    return settings;
}

// Where the logs lie is found before the arguments are looked at, so that a refused one is named
// there.
void open_log(StepLog& log, const std::string& name, const std::vector<std::string>& words)
{
    if (const auto out = find_value(words, "-so=")) {
        const bool appendOut = find_value(words, "-soa").has_value();
        const bool appendErr = find_value(words, "-sea").has_value();
        log.open(*out, find_value(words, "-se=").value_or(""), appendOut, appendErr);
        return;
    }
    const auto model = find_value(words, "--ModelDir=");
    const auto output = find_value(words, "--Process_Output=");
    if (!model || !output)
        return;
    const std::string directory = Tavro::IsRooted(*output) ? *output : *model + *output;
    const std::string base = directory + plain_name(name);
    log.open(base + ".out", base + ".err", false, false);
}

std::vector<ArgumentForm> forms_of(
    const Program& program, const std::string& name, const std::vector<std::string>& words)
{
    std::vector<ArgumentForm> forms = program.m_forms(words);
    if (name.ends_with(kThreadedEnding))
        forms.push_back({ "--nThreads=", ArgumentKind::Count });
    return forms;
}

void demand_directories(const Arguments& arguments, const Step& step)
{
    if (!arguments.has("--ModelDir="))
        return;
    for (const std::string& directory : { step.in_model(""), step.in_grid_output(""),
             step.in_solver_input(""), step.in_process_output("") })
        if (!Tavro::FilePath(directory).IsDirectory())
            throw Refusal(directory + ": no such directory");
}

void introduce(StepLog& log, const Program& program, const Start& start)
{
    log.say(start.m_strProgram + ": a stand-in for the program that " + program.m_strPurpose
        + ". It keeps that program's contract and solves nothing.");
    for (const std::string& word : start.m_vecWords)
        log.say("  " + word);
}

int live(const Program& program, const Start& start, StepLog& log)
{
    const Settings settings = settings_of(start.m_strProgram, start);
    Arguments arguments(start.m_vecWords, forms_of(program, start.m_strProgram, start.m_vecWords));
    const ManagerSlot slot;
    ChildLink link(program.m_link, arguments.number("-linkid="));
    Step step(std::move(arguments), log, link, settings);
    demand_directories(step.arguments(), step);
    program.m_work(step);
    log.say("ended well");
    link.succeed();
    return settings.m_fault == Fault::Exit ? EXIT_FAILURE : EXIT_SUCCESS;
}

} // namespace

int run_program(const Program& program, const std::string& name, int argc, char** argv)
{
    const Start start { name, argc > 0 ? argv[0] : "", working_directory(),
        std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc) };
    StepLog log;
    open_log(log, name, start.m_vecWords);
    introduce(log, program, start);
    try {
        return live(program, start, log);
    } catch (const Stopped&) {
        log.say("stopped on request");
        return EXIT_SUCCESS;
    } catch (const FailedOnDemand&) {
        log.complain("failed on demand");
        return EXIT_SUCCESS;
    } catch (const Tavro::Exception& failure) {
        log.complain(name + ": " + failure.m_strErrorMessage);
    } catch (const std::exception& refusal) {
        log.complain(name + ": " + refusal.what());
    }
    return EXIT_FAILURE;
}

std::vector<ArgumentForm> standard_forms(std::vector<ArgumentForm> others)
{
    std::vector<ArgumentForm> forms { { "-linkid=", ArgumentKind::Number },
        { "--ModelDir=", ArgumentKind::Directory }, { "--Grid_Output=", ArgumentKind::Directory },
        { "--Solver_Input=", ArgumentKind::Directory },
        { "--Process_Output=", ArgumentKind::Directory } };
    for (ArgumentForm& form : others)
        forms.push_back(std::move(form));
    return forms;
}

} // namespace Standins
