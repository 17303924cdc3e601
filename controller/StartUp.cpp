// SPDX-License-Identifier: Apache-2.0
#include "controller/StartUp.h"

#include "airfoil/AirfoilTable.h"
#include "controller/CompletionFile.h"
#include "controller/ErrorLines.h"
#include "controller/Progress.h"
#include "controller/RunEnd.h"
#include "controller/RunFiles.h"
#include "controller/StepProgram.h"
#include "controller/TotalSteps.h"
#include "controller/UncaughtException.h"
#include "controller/UpdateThread.h"
#include "links/GUIConLink.h"
#include "links/LinkManager.h"
#include "state/ControllerState.h"
#include "tavrobase/CommandLine.h"
#include "tavrobase/FileUtilities.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/SystemPath.h"
#include "tavrobase/platform/Errors.h"
#include "tavrobase/platform/Processes.h"

namespace {

using Tavro::LinkManager;

/// The given path, which may begin with "~", from the top of the file system on.
Tavro::FilePath case_path(const std::string& given)
{
    return run_path(absolute_text(Tavro::FilePath(given).Get()));
}

/// With "/" at its end; empty if the case lies at the top of the file system, or nowhere.
std::string directory_of(const Tavro::FilePath& caseFile)
{
    const std::string text = caseFile.Get();
    const auto slash
        = text.find_last_of('/', text.ends_with('/') ? text.size() - 2 : std::string::npos);
    const auto top = Tavro::PathText(Tavro::SystemPath(text).root_path()).size();
    return slash == std::string::npos || slash < top ? "" : text.substr(0, slash + 1);
}

void set_run_directories(const std::string& root)
{
    g_info.m_fpModelDir = Tavro::AsWritten(root);
    g_info.m_fpProcessOutput = run_path(below_root("/Process_Output/"));
    g_info.m_fpGridOutput = run_path(below_root("/Grid_Output/"));
    g_info.m_fpSolverInput = run_path(below_root("/Solver_Input/"));
    g_info.m_fpDebugFiles = run_path(below_root("/Debug_Files/"));
}

void redirect_streams()
{
    const std::string logs = g_info.m_fpProcessOutput.Get();
    Tavro::Daemonize(run_path(logs + "/Vortik_Controller.out"),
        run_path(logs + "/Vortik_Controller.err"), false, false);
}

bool refuse_case()
{
    report_error(" Could not read controller input file");
    LinkManager::Shutdown();
    return false;
}

/// A file without a directory is one of the root: the working directory changes during a run, and
/// the front end looks for its file in one place.
Tavro::FilePath completion_file(const Tavro::FilePath& given)
{
    const std::string text = given.Get();
    return text.empty() || Tavro::IsRooted(text) ? given : run_path(below_root("/" + text));
}

} // namespace

bool enter_run(int argc, const char* const* argv, Tavro::FilePath& caseFile)
{
    report_uncaught_exceptions();
    Tavro::CommandLine::SetParameters(argc, argv);
    std::string value;
    if (!Tavro::CommandLine::GetArgument("input", value)) {
        report_error(" Incorrect command line arguments");
        LinkManager::Shutdown();
        return false;
    }
    // Whoever starts us may call us what he likes: the path of the start is what counts.
    StepProgram::remember_program_directory(Tavro::Platform::executable_path().value_or(argv[0]));
    caseFile = case_path(value);
    const std::string root = directory_of(caseFile);
    if (root.empty()) // a run fills its root with directories: not the top of the file system
        return refuse_case();
    set_run_directories(root);
    (void)Tavro::SetWorkingDirectory(g_info.m_fpModelDir); // if not, there is no case file either
    make_run_directory(g_info.m_fpProcessOutput.Get());
    make_run_directory(g_info.m_fpDebugFiles.Get());
    redirect_streams();
    return true;
}

bool take_case(const Tavro::FilePath& caseFile, VRK::ControllerInput& input)
{
    if (!input.Read(caseFile))
        return refuse_case();
    (void)Tavro::RemovePath(caseFile); // if it stays, a later start runs it again
    return true;
}

bool prepare_state(const VRK::ControllerInput& input)
{
    const Tavro::FilePath completion = completion_file(input.m_fpCompletionFile);
    g_info.m_bLastAdaptive = false;
    write_completion_file(completion, VRK::StepNotFinished);

    g_info.m_step = VRK::StepStarting;
    g_info.m_fpCompletionFile = completion;
    g_info.m_pGUILink = nullptr;
    g_info.m_pGridGenLink = nullptr;
    g_info.m_pRotorProgLink = nullptr;
    g_info.m_pSolverLink = nullptr;
    g_info.m_fpTreeGenFile = run_path(below_grid_output("/" + input.m_strCaseName + ".treegen"));
    g_info.m_uintTargetStep = 0;
    g_info.m_ullAdaptCount = 0;
    if (g_info.m_mutex.initialize() == 0)
        return true;
    report_error(" Could not initialize controller mutex");
    LinkManager::Shutdown();
    return false;
}

bool attach_to_front_end(const VRK::ControllerInput& input)
{
    const LinkManager::Result started = LinkManager::Startup();
    if (started != LinkManager::Success) {
        report_error(std::string("Failed to start the link manager: ")
            + LinkManager::GetResultString(started));
        g_info.m_mutex.destroy();
        return false;
    }
    LinkManager::Result attached {};
    g_info.m_pGUILink = new VRK::GUIConLink(input.m_uintGUILinkID, attached); // the record owns it
    if (attached != LinkManager::Success) {
        report_error(
            std::string("Failed to attach to GUI link: ") + LinkManager::GetResultString(attached));
        give_everything_back();
        return false;
    }
    update_step(VRK::StepReady);
    return true;
}

bool start_watching()
{
    const auto error = start_update_thread();
    if (error == 0)
        return true;
    report_error("Failed to start update thread: " + Tavro::Platform::error_text(error));
    update_step(VRK::StepThreadFailed);
    output_completion_file();
    give_everything_back();
    return false;
}

void clean_airfoil_tables(VRK::ControllerInput& input)
{
    for (VRK::RotorData& rotor : input.m_vecRotors) {
        for (std::string& table : rotor.m_vecAftFile) {
            const FileInWork inWork(table);
            table = Tavro::AirfoilTable::cleanAirfoilTable(table);
        }
    }
}

void begin_progress(const VRK::ControllerInput& input)
{
    g_info.m_uintBaseStep = 0;
    const std::uint32_t total = total_steps(input.m_time);
    update_total_steps(total);
    start_timer(total);
}
