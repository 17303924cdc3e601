// SPDX-License-Identifier: Apache-2.0
#include "controller/StartUp.h"

#include "airfoil/AirfoilTable.h"
#include "controller/CompletionFile.h"
#include "controller/Progress.h"
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
#include "tavrobase/platform/Errors.h"

#include <iostream>

namespace {

using Tavro::LinkManager;

/// A path that the change of the working directory does not change.
Tavro::FilePath absolute(const std::string& text)
{
    const Tavro::FilePath path(text);
    if (path.Get().starts_with('/'))
        return path;
    return Tavro::FilePath(Tavro::getCurrentDirectory().Get() + "/" + path.Get());
}

void set_run_directories(const Tavro::FilePath& root)
{
    g_info.m_fpModelDir = root;
    g_info.m_fpProcessOutput = Tavro::FilePath(below_root("/Process_Output/"));
    g_info.m_fpGridOutput = Tavro::FilePath(below_root("/Grid_Output/"));
    g_info.m_fpSolverInput = Tavro::FilePath(below_root("/Solver_Input/"));
    g_info.m_fpDebugFiles = Tavro::FilePath(below_root("/Debug_Files/"));
}

void redirect_streams()
{
    const std::string logs = g_info.m_fpProcessOutput.Get();
    if (!g_info.m_fpProcessOutput.IsDirectory()) // the last words that anybody can read
        report_error("Could not create the log directory " + logs);
    Tavro::Daemonize(Tavro::FilePath(logs + "/Vortik_Controller.out"),
        Tavro::FilePath(logs + "/Vortik_Controller.err"), false, false);
}

void drop_front_end_link()
{
    delete g_info.m_pGUILink;
    g_info.m_pGUILink = nullptr;
}

} // namespace

void report_error(const std::string& text)
{
    std::cerr << "CONTROLLER ERROR: " << text << std::endl;
}

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
    StepProgram::remember_program_directory(argv[0]);
    caseFile = absolute(value);
    const Tavro::FilePath root = caseFile.GetPath();
    (void)Tavro::SetWorkingDirectory(root); // without the directory there is no case file either
    set_run_directories(root);
    make_run_directory(g_info.m_fpProcessOutput.Get());
    make_run_directory(g_info.m_fpDebugFiles.Get());
    redirect_streams();
    return true;
}

bool open_case(const Tavro::FilePath& caseFile, VRK::ControllerInput& input)
{
    if (!input.Read(caseFile)) {
        report_error(" Could not read controller input file");
        LinkManager::Shutdown();
        return false;
    }
    (void)Tavro::RemovePath(caseFile); // a case is run once; if it stays, it is run again
    g_info.m_bLastAdaptive = false;
    write_completion_file(input.m_fpCompletionFile, VRK::StepNotFinished);

    g_info.m_step = VRK::StepStarting;
    g_info.m_fpCompletionFile = input.m_fpCompletionFile;
    g_info.m_pGUILink = nullptr;
    g_info.m_pGridGenLink = nullptr;
    g_info.m_pRotorProgLink = nullptr;
    g_info.m_pSolverLink = nullptr;
    g_info.m_fpTreeGenFile
        = Tavro::FilePath(below_grid_output("/" + input.m_strCaseName + ".treegen"));
    g_info.m_uintTargetStep = 0;
    g_info.m_ullAdaptCount = 0;
    if (g_info.m_mutex.initialize() != 0) {
        report_error(" Could not initialize controller mutex");
        LinkManager::Shutdown();
        return false;
    }
    return true;
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
        drop_front_end_link();
        g_info.m_mutex.destroy();
        LinkManager::Shutdown();
        return false;
    }
    update_step(VRK::StepReady);
    const auto error = start_update_thread();
    if (error != 0) {
        report_error("Failed to start update thread: " + Tavro::Platform::error_text(error));
        update_step(VRK::StepThreadFailed);
        output_completion_file();
        drop_front_end_link();
        g_info.m_mutex.destroy();
        LinkManager::Shutdown();
        return false;
    }
    return true;
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
