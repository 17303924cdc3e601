// SPDX-License-Identifier: Apache-2.0
// A walk through what the package can do so far, on a real case, with real files and a real child
// process.

#include "airfoil/AirfoilTable.h"
#include "case/AdaptiveInput.h"
#include "case/GridGenInput.h"
#include "case/SlvrMain.h"
#include "case/SlvrRot.h"
#include "case/TimeGrid.h"
#include "examples/tour/RobinCase.h"
#include "frontend/models/SimpleAirfoil.h"
#include "links/GeneralConLink.h"
#include "state/ControllerState.h"
#include "tavrobase/CommandLine.h"
#include "tavrobase/FileUtilities.h"
#include "tavrobase/ProcessExecution.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/SystemUtilities.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <thread>

namespace {

using Tavro::FilePath;
using Tavro::LinkManager;

constexpr int kChildTurns = 10;

[[noreturn]] void give_up(const std::string& what)
{
    std::cerr << "vortik_demo: " << what << '\n';
    std::exit(1);
}

void require(bool good, const std::string& what)
{
    if (!good)
        give_up(what);
}

std::string bytes_of(const FilePath& path)
{
    std::ifstream file(path.Get(), std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

void show_files(const FilePath& directory)
{
    auto names = Tavro::GetDirectoryContents(directory, "*");
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        const FilePath file = directory + name;
        if (!file.IsDirectory())
            std::cout << "  " << file << ", " << Tavro::formatInteger(Tavro::GetFileSize(file))
                      << " bytes\n";
    }
}

/// The first lines of a text file, as a reader would look at it.
void show_head(const FilePath& path, int lines)
{
    std::cout << "\n  " << path << ":\n";
    std::ifstream file(path.Get());
    std::string line;
    for (int i = 0; i < lines && std::getline(file, line); ++i)
        std::cout << "  | " << line << '\n';
}

void show_case(const VRK::ControllerInput& input, const FilePath& file)
{
    std::cout << "\n1. A case and its binary file\n\n";
    require(input.Write(file), "cannot write " + file.Get());
    VRK::ControllerInput again;
    require(again.Read(file), "cannot read " + file.Get());
    const FilePath copy = file + ".again";
    require(again.Write(copy), "cannot write " + copy.Get());
    require(bytes_of(file) == bytes_of(copy), "the case changed on its way through the record");
    require(Tavro::RemovePath(copy), "cannot remove " + copy.Get());
    std::cout << "  " << file << ", " << Tavro::formatInteger(Tavro::GetFileSize(file))
              << " bytes: " << again.m_vecBodies.size() << " bodies, " << again.m_vecRotors.size()
              << " rotor.\n  Read into the record and written again: the same bytes.\n";
}

void show_airfoil_tables(VRK::ControllerInput& input)
{
    std::cout << "\n2. An airfoil table with comments in front\n\n";
    for (VRK::RotorData& rotor : input.m_vecRotors) {
        for (std::string& name : rotor.m_vecAftFile) {
            std::ofstream(name) << "This table comes from a simple model, not from a measurement.\n"
                                   "Its rotor program would stumble over these two lines.\n"
                                << Examples::simple_airfoil_table("NACA 0012, simple model");
            const std::string cleaned = Tavro::AirfoilTable::cleanAirfoilTable(name);
            Tavro::AirfoilTable table;
            std::string errors;
            require(table.readInputCard(FilePath(cleaned), errors, true) == 0, errors);
            std::cout << "  " << name << " is used as " << cleaned << ": "
                      << table.m_lift.m_rows.size() << " angles, lift at 10 degrees and Mach "
                      << table.m_lift.mach(2).value_or(0) << " is "
                      << table.m_lift.coefficient(31, 2).value_or(0) << ".\n";
            name = cleaned;
        }
    }
}

void show_cards(const VRK::ControllerInput& input)
{
    std::cout << "\n3. The input cards of the step programs\n\n";
    write_grid_gen_input(input);
    write_bnd_cnd(input);
    write_slvr_rot(input);
    write_slvr_main(input);
    write_time_grid(input);
    show_files(g_info.m_fpGridOutput.Get());
    show_files(g_info.m_fpSolverInput.Get());
    const std::string stem = g_info.m_fpSolverInput.Get() + input.m_strCaseName;
    show_head(stem + ".SlvrRot", 12);
    show_head(stem + ".Tgrid", 6);
}

/// The child's side of a link: publishes progress and says how it ended.
int run_as_child(int id)
{
    require(LinkManager::Startup() == LinkManager::Success, "the child has no link manager");
    LinkManager::Result result {};
    {
        Tavro::GeneralConLink link(static_cast<unsigned int>(id), result);
        require(result == LinkManager::Success, LinkManager::GetResultString(result));
        for (int turn = 1; turn <= kChildTurns; ++turn) {
            Tavro::PortableMilliSleep(60);
            require(
                link.SetProgress(static_cast<double>(turn) / kChildTurns) == LinkManager::Success,
                "the child lost its link");
        }
        require(link.SetSuccessfulCompletion(true) == LinkManager::Success, "no success to tell");
    }
    LinkManager::Shutdown();
    return 0;
}

void show_child(const FilePath& program)
{
    std::cout << "\n4. A child program under a link\n\n";
    auto result = LinkManager::Startup();
    require(result == LinkManager::Success, LinkManager::GetResultString(result));
    {
        Tavro::GeneralConLink link(result);
        require(result == LinkManager::Success, LinkManager::GetResultString(result));
        (void)link.SetStop(false); // a link that was just created takes both
        (void)link.SetSuccessfulCompletion(false);

        std::string error;
        std::atomic<bool> ended = false;
        std::atomic<bool> started = false;
        std::thread runner([&] {
            started = Tavro::run_process(program,
                { "-linkid=" + Tavro::NumToString(link.GetLinkID()) }, "demo-child", error);
            ended = true;
        });
        for (double last = -1.0; !ended;) {
            double progress = 0.0;
            if (link.GetProgress(progress) == LinkManager::Success && progress != last)
                std::cout << "  the child reports " << Tavro::NumToString(progress) << '\n';
            last = progress;
            Tavro::PortableMilliSleep(10);
        }
        runner.join();
        bool success = false;
        (void)link.GetSuccessfulCompletion(success); // stays false if it cannot be read
        require(started && success, started ? "the child did not report success" : error);
        std::cout << "  the child has ended and reports success\n";
    }
    LinkManager::Shutdown();
}

void prepare(const std::string& root)
{
    std::error_code ignored; // of an earlier tour, hidden files too; none is as good
    std::filesystem::remove_all(root, ignored);
    g_info.m_fpModelDir = root;
    g_info.m_fpGridOutput = root + "/Grid_Output/";
    g_info.m_fpSolverInput = root + "/Solver_Input/";
    for (const std::string& directory :
        { root, g_info.m_fpGridOutput.Get(), g_info.m_fpSolverInput.Get() })
        require(Tavro::createDirectory(directory, 0755) == 0, "cannot create " + directory);
    g_info.m_fpTreeGenFile = g_info.m_fpGridOutput + "robin.treegen";
}

} // namespace

int main(int argc, char** argv)
{
    Tavro::CommandLine::SetParameters(argc, argv);
    int id = 0;
    if (Tavro::CommandLine::GetArgument("linkid", id))
        return run_as_child(id);
    std::vector<FilePath> files;
    Tavro::CommandLine::GetFileList(files);
    if (files.size() != 1)
        give_up("usage: vortik_demo DIRECTORY");
    if (!files[0].IsDirectory())
        require(Tavro::createDirectory(files[0], 0755) == 0, "cannot create " + files[0].Get());
    const bool absolute = files[0].Get().starts_with('/');
    const std::string root = (absolute ? "" : Tavro::getCurrentDirectory().Get())
        + FilePath(files[0].Get()).Get() + "tour";

    std::cout
        << "A tour of what this version can do. Grid generator, solver and run controller are not\n"
           "part of it yet: nothing is computed here, and nothing pretends to be.\n";
    // As the shell named it, which means another file in the directory of the run.
    const std::string named = Tavro::CommandLine::GetProgramPath().Get();
    const bool relative = named.find('/') != std::string::npos && !named.starts_with('/');
    const FilePath program = relative ? Tavro::getCurrentDirectory().Get() + named : named;
    prepare(root);
    require(Tavro::SetWorkingDirectory(root), "cannot enter " + root); // as a run does
    VRK::ControllerInput input = Examples::robin_case(root);
    show_case(input, root + "/robin.case");
    show_airfoil_tables(input);
    show_cards(input);
    show_child(program);
    std::cout << "\nThe files are in " << root << "; docs/index.md tells what they mean.\n";
    return 0;
}
