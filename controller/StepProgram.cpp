// SPDX-License-Identifier: Apache-2.0
#include "controller/StepProgram.h"

#include "controller/ErrorLines.h"
#include "controller/RunFiles.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/ProcessExecution.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/SystemPath.h"

#include <filesystem>
#include <system_error>

namespace StepProgram {

namespace {

Tavro::FilePath& program_directory()
{
    static Tavro::FilePath directory;
    return directory;
}

/// Last name of a directory, whether it exists or not.
std::string bare_name(const Tavro::FilePath& directory)
{
    std::string name = directory.GetName();
    if (name.ends_with('/'))
        name.pop_back();
    return name;
}

void clear_general(Tavro::GeneralConLink& link)
{
    // A link made a moment ago can be written; if not, the program's verdict cannot be read either.
    (void)link.SetStop(false);
    (void)link.SetSuccessfulCompletion(false);
}

bool general_succeeded(const Tavro::GeneralConLink& link)
{
    bool succeeded = false;
    return link.GetSuccessfulCompletion(succeeded) == Tavro::LinkManager::Success && succeeded;
}

} // namespace

void report_link_failure(const char* words, Tavro::LinkManager::Result result)
{
    say_error(std::string(words) + Tavro::LinkManager::GetResultString(result));
}

std::string link_argument(unsigned int linkID) { return "-linkid=" + Tavro::NumToString(linkID); }

std::string model_directory(const VRK::ControllerInput& input)
{
    return "--ModelDir=" + input.m_strModelDir + "/";
}

std::string model_name(const VRK::ControllerInput& input)
{
    return "--ModelName=" + input.m_strCaseName;
}

void add_run_directories(std::vector<std::string>& arguments)
{
    arguments.push_back("--Grid_Output=" + bare_name(g_info.m_fpGridOutput) + "/");
    arguments.push_back("--Solver_Input=" + bare_name(g_info.m_fpSolverInput) + "/");
    arguments.push_back("--Process_Output=" + bare_name(g_info.m_fpProcessOutput) + "/");
}

void add_threads(std::vector<std::string>& arguments, const VRK::ControllerInput& input)
{
    if (is_threaded(input))
        arguments.push_back("--nThreads=" + Tavro::NumToString(input.m_nThreads));
}

bool is_threaded(const VRK::ControllerInput& input) { return input.m_shtParallelMode == 1; }

void remember_program_directory(const std::string& controller)
{
    const std::string program = absolute_text(controller);
    const std::string directory = program.substr(0, program.rfind('/') + 1);
    std::error_code error; // a directory that cannot be resolved is taken as it was given
    const auto resolved = std::filesystem::canonical(Tavro::SystemPath(directory), error);
    program_directory() = Tavro::AsWritten(error ? directory : Tavro::PathText(resolved / ""));
}

bool run_beside_controller(
    const std::string& name, const std::vector<std::string>& arguments, std::string& error)
{
    {
        // A stop that is being carried out keeps the mutex up to the end of the process, so that
        // the program is not started. One that comes between here and the start finds it started.
        const std::lock_guard lock(g_info.m_mutex);
    }
    return Tavro::run_process(program_directory() + name, arguments, name, error);
}

bool run_variant(const std::string& name, const VRK::ControllerInput& input,
    const std::vector<std::string>& arguments, std::string& error)
{
    return run_beside_controller(is_threaded(input) ? name + "-omp" : name, arguments, error);
}

bool run_general(Tavro::GeneralConLink* ControllerState::*slot, const std::string& name,
    const VRK::ControllerInput& input, std::vector<std::string> arguments, std::string& error)
{
    // The words name the rotor program for every program that comes here; whoever searches logs
    // searches for them as they are.
    const LinkUse<Tavro::GeneralConLink> use { slot,
        "CONTROLLER ERROR: Failed to create RotorProg link: ", clear_general, general_succeeded };
    return run_with_link<Tavro::GeneralConLink>(use, [&](unsigned int linkID) {
        arguments.insert(arguments.begin(), link_argument(linkID));
        add_threads(arguments, input);
        return run_variant(name, input, arguments, error);
    });
}

} // namespace StepProgram
