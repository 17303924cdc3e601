// SPDX-License-Identifier: Apache-2.0
#include "tests/controller/support/ControllerRun.h"
#include "tests/controller/support/ExpectedArguments.h"
#include "tests/links/support/RawBlock.h"
#include "tests/support/Programs.h"

#include <filesystem>
#include <string>
#include <vector>

// What stands between the command line and the first step: where the run and its programs are, and
// what can fail.

namespace Testing {

namespace {

using namespace Expected;

const std::string kComplete = "status 0, step 8, file 8<end>";
const std::string kUnreadable = "CONTROLLER ERROR:  Could not read controller input file\n";

/// Starts of a run that is only a grid of one stage: its working directory and all its arguments
/// tell where the controller thinks that it is.
class StartOfRun : public ControllerRun {
protected:
    StartOfRun()
    {
        m_case.m_bGridOnly = true;
        m_case.m_bRunBodyFitter = false;
        m_case.m_bRunValidator = false;
        m_case.m_vecBodies.clear();
    }
    void expect_complete_run()
    {
        EXPECT_EQ(ending(), kComplete);
        EXPECT_EQ(published(), "2 19 8");
        EXPECT_EQ(children(), child("TreeGen", "@/Grid_Output", 19, kOctreeWithoutFitter));
        EXPECT_EQ(log(), "main: running grid generator\n      running octree\n");
        EXPECT_EQ(errors(), "");
        EXPECT_EQ(inherited(), "");
        EXPECT_EQ(files(),
            "Body_Pressure/\n"
            "Debug_Files/\n"
            "Grid_Output/\n"
            "Grid_Output/VRK.grd.L2G\n"
            "Grid_Output/VRK.grid.dat\n"
            "Grid_Output/wing.treegen\n"
            "Process_Output/\n"
            "Process_Output/Vortik_Controller.err\n"
            "Process_Output/Vortik_Controller.out\n"
            "Solver_Input/\n"
            "Solver_Input/ParmFlw.h\n"
            "completion\n");
    }
    /// A start that has failed behind the case, which is gone, and before any step.
    void expect_failed_start(const std::string& error, const std::string& steps = "") const
    {
        EXPECT_EQ(errors(), "CONTROLLER ERROR: " + error + "\n");
        EXPECT_EQ(inherited(), "");
        EXPECT_EQ(published(), steps);
        EXPECT_EQ(children(), "");
        EXPECT_EQ(log(), "");
        EXPECT_EQ(files(),
            "Debug_Files/\n"
            "Process_Output/\n"
            "Process_Output/Vortik_Controller.err\n"
            "Process_Output/Vortik_Controller.out\n"
            "completion\n");
    }
    /// A start with the case under a name as it is seen from a directory.
    void expect_case_path(const std::string& path, const std::string& directory)
    {
        save_case();
        start({ "-input=" + path }, "", directory);
        expect_complete_run();
    }
    void expect_start_as(const std::string& program, const std::string& directory)
    {
        save_case();
        start({ "-input=" + root("wing.vrk") }, program, directory);
        expect_complete_run();
    }
};

TEST_F(StartOfRun, TakesTheWholePathOfACase) { expect_case_path(root("wing.vrk"), "/"); }

TEST_F(StartOfRun, TakesACaseInADirectoryNamedFromHere)
{
    expect_case_path("run/wing.vrk", aside("."));
}

TEST_F(StartOfRun, TakesACaseWithoutADirectory) { expect_case_path("wing.vrk", root()); }

TEST_F(StartOfRun, TakesACaseNamedFromHere) { expect_case_path("./wing.vrk", root()); }

TEST_F(StartOfRun, TakesACaseInADirectoryBelowHere)
{
    expect_case_path("./run/wing.vrk", aside("."));
}

TEST_F(StartOfRun, TakesACaseInANeighbouringDirectory)
{
    expect_case_path("../run/wing.vrk", programs());
}

TEST_F(StartOfRun, TakesACaseThroughADirectoryThatIsALink)
{
    make_link(root(), aside("way"));
    save_case();
    start({ "-input=" + aside("way/wing.vrk") });
    EXPECT_EQ(ending(), kComplete);
    EXPECT_EQ(completion(), "8\n");
    EXPECT_EQ(sequence(), "19 TreeGen");
    EXPECT_EQ(errors(), "");
}

TEST_F(StartOfRun, LooksAtNoOtherParameter)
{
    save_case();
    start({ "stray", "-root=" + aside("."), "-input=" + root("wing.vrk"), "-restart=1", "-2" }, "",
        programs());
    expect_complete_run();
}

TEST_F(StartOfRun, FindsProgramsBesideAControllerStartedByARelativePath)
{
    expect_start_as("programs/Vortik_Controller", aside("."));
}

TEST_F(StartOfRun, FindsProgramsBesideAControllerStartedFromTheirDirectory)
{
    expect_start_as("./Vortik_Controller", programs());
}

TEST_F(StartOfRun, FindsProgramsBesideAControllerStartedFromANeighbouringDirectory)
{
    expect_start_as("../programs/Vortik_Controller", root());
}

TEST_F(StartOfRun, FindsProgramsBesideAControllerFoundThroughPath)
{
    set("PATH", "/nowhere:" + programs() + ":/usr/bin");
    expect_start_as("Vortik_Controller", root());
}

TEST_F(StartOfRun, FindsProgramsBesideItselfWhenAnotherControllerIsOnThePath)
{
    make_directory(aside("other"));
    put_program(program_beside_this("scripted_program"), aside("other/Vortik_Controller"));
    set("PATH", aside("other") + ":/usr/bin");
    expect_start_as("Vortik_Controller", root());
}

TEST_F(StartOfRun, RunsInADirectoryWhoseNameHasATildeInIt)
{
    std::filesystem::rename(root(), aside("run~1"));
    make_link(aside("run~1"), root());
    save_case();
    set("HOME", "/nowhere");
    start({ "-input=wing.vrk" }, "", aside("run~1"));
    EXPECT_EQ(ending(), kComplete);
    EXPECT_EQ(sequence(), "19 TreeGen");
    EXPECT_EQ(errors(), "");
}

TEST_F(StartOfRun, FindsProgramsBesideAControllerFoundThroughARelativePath)
{
    set("PATH", "/nowhere:programs");
    expect_start_as("Vortik_Controller", aside("."));
}

TEST_F(StartOfRun, LooksForProgramsBesideTheNameThatItWasStartedBy)
{
    make_directory(aside("elsewhere"));
    put_program(program_beside_this("controller_under_test"), aside("elsewhere/Vortik_Controller"));
    save_case();
    start({ "-input=" + root("wing.vrk") }, aside("elsewhere/Vortik_Controller"));
    EXPECT_EQ(ending(), "status 255, step -3, file -3<end>");
    EXPECT_EQ(errors(), "CONTROLLER ERROR: CreateProcess() failed!  ERROR #: 2\n\n");
}

TEST_F(StartOfRun, WithoutAnInputFailsOnTheInheritedStreamAndCreatesNothing)
{
    save_case();
    for (const char* arguments : { "", "-output=wing.vrk", "-input", "-input=" }) {
        std::filesystem::remove(aside("inherited"));
        std::vector<std::string> list;
        if (*arguments != '\0')
            list.emplace_back(arguments);
        start(list, "", root());
        EXPECT_EQ(finish(), "255") << arguments;
        EXPECT_EQ(inherited(), "CONTROLLER ERROR:  Incorrect command line arguments\n")
            << arguments;
        EXPECT_EQ(files(), "wing.vrk\n") << arguments;
    }
    EXPECT_EQ(links_left(), "clean");
}

TEST_F(StartOfRun, WithoutACaseFileFailsInTheLogOfTheRun)
{
    start();
    EXPECT_EQ(ending(), "status 255, step 0, file missing");
    EXPECT_EQ(published(), "");
    EXPECT_EQ(errors(), kUnreadable);
    EXPECT_EQ(log(), "");
    EXPECT_EQ(inherited(), "");
    EXPECT_EQ(files(),
        "Debug_Files/\n"
        "Process_Output/\n"
        "Process_Output/Vortik_Controller.err\n"
        "Process_Output/Vortik_Controller.out\n");
}

TEST_F(StartOfRun, CaseFileThatIsCutShortStaysWhereItIs)
{
    save_case();
    write_file(root("wing.vrk"), read_file(root("wing.vrk")).substr(0, 300));
    start();
    EXPECT_EQ(ending(), "status 255, step 0, file missing");
    EXPECT_EQ(errors(), kUnreadable);
    EXPECT_EQ(read_file(root("wing.vrk")).size(), 300U);
}

TEST_F(StartOfRun, SecondStartWithTheSamePathFindsNoCase)
{
    EXPECT_EQ(run(), kComplete);
    start();
    // The completion file and the link keep what the first run has said.
    EXPECT_EQ(ending(), "status 255, step 8, file 8<end>");
    EXPECT_EQ(errors(), kUnreadable);
    EXPECT_EQ(inherited(), "");
}

TEST_F(StartOfRun, DirectoryThatIsMissingIsNotMade)
{
    start({ "-input=" + aside("nowhere/wing.vrk") });
    EXPECT_EQ(finish(), "255");
    // There is no log to which it could go.
    EXPECT_EQ(inherited(), kUnreadable);
    EXPECT_FALSE(file_exists(aside("nowhere")));
    EXPECT_EQ(files(), "");
    EXPECT_EQ(children(), "");
}

TEST_F(StartOfRun, NothingIsMadeAtTheTopOfTheFileSystem)
{
    expect_case_path("wing.vrk", root());
    for (const char* name : { "/Process_Output", "/Debug_Files", "/Grid_Output", "/Solver_Input" })
        EXPECT_FALSE(file_exists(name)) << name;
}

TEST_F(StartOfRun, CaseAtTheTopOfTheFileSystemIsRefused)
{
    std::string said; // the starts share one file
    for (const char* path : { "/", "/wing.vrk", "//wing.vrk" }) {
        start({ std::string("-input=") + path });
        EXPECT_EQ(finish(), "255") << path;
        EXPECT_EQ(inherited(), said += kUnreadable) << path;
    }
    for (const char* name : { "/Process_Output", "/Debug_Files", "/Grid_Output", "/Solver_Input" })
        EXPECT_FALSE(file_exists(name)) << name;
}

TEST_F(StartOfRun, MutexThatCannotBeMadeFailsBehindTheCompletionFile)
{
    set("VORTIK_TEST_FAIL_MUTEX", "1");
    EXPECT_EQ(run(), "status 255, step 0, file -9<end>");
    expect_failed_start(" Could not initialize controller mutex");
}

TEST_F(StartOfRun, LinkManagerWithoutItsMutexIsSaid)
{
    set("VORTIK_TEST_FAIL_MUTEX", "2");
    EXPECT_EQ(run(), "status 255, step 0, file -9<end>");
    expect_failed_start("Failed to start the link manager: Couldn't initialize mutex");
}

TEST_F(StartOfRun, LinkManagerWithoutItsThreadIsSaid)
{
    set("VORTIK_TEST_FAIL_THREAD", "1");
    EXPECT_EQ(run(), "status 255, step 0, file -9<end>");
    expect_failed_start(
        "Failed to start the link manager: Couldn't start consistency check thread");
}

TEST_F(StartOfRun, LinkManagerWithoutAFreeSlotIsSaid)
{
    RawBlock block;
    for (int slot = 1; slot < 50; ++slot)
        block.set_slot(slot, seconds_now());
    save_case();
    start();
    EXPECT_EQ(finish(), "255");
    for (int slot = 1; slot < 50; ++slot)
        block.set_slot(slot, 0);
    expect_failed_start("Failed to start the link manager: Too many managers");
    EXPECT_EQ(completion(), "-9\n");
    EXPECT_EQ(links_left(), "clean");
}

TEST_F(StartOfRun, LinkOfNobodyIsSaid)
{
    m_case.m_uintGUILinkID = 77;
    save_case();
    m_case.m_uintGUILinkID = front_end().GetLinkID();
    start();
    EXPECT_EQ(ending(), "status 255, step 0, file -9<end>");
    expect_failed_start("Failed to attach to GUI link: Unallocated link ID");
}

TEST_F(StartOfRun, LinkBeyondAllLinksIsSaid)
{
    m_case.m_uintGUILinkID = 100;
    save_case();
    m_case.m_uintGUILinkID = front_end().GetLinkID();
    start();
    EXPECT_EQ(ending(), "status 255, step 0, file -9<end>");
    expect_failed_start("Failed to attach to GUI link: Invalid link ID");
}

TEST_F(StartOfRun, LinkOfAnotherKindIsSaid)
{
    break_front_end_link(true);
    save_case();
    start();
    EXPECT_EQ(finish(), "255");
    break_front_end_link(false);
    expect_failed_start("Failed to attach to GUI link: Incorrect size");
    EXPECT_EQ(completion(), "-9\n");
    EXPECT_EQ(published_step(), 0);
    EXPECT_EQ(links_left(), "clean");
}

TEST_F(StartOfRun, UpdateThreadThatCannotStartIsPublishedAndWritten)
{
    set("VORTIK_TEST_FAIL_THREAD", "2"); // behind that of the link manager
    EXPECT_EQ(run(), "status 255, step -2, file -2<end>");
    expect_failed_start("Failed to start update thread: Resource temporarily unavailable", "2 -2");
}

TEST_F(StartOfRun, AirfoilTablesAreCleanedBeforeTheRotorCard)
{
    const std::string table = "small                          1 1 0 0 0 0\n"
                              "          0.30\n"
                              "   0.00  .0000\n";
    make_directory(root("tables"));
    write_file(root("tables/dirty.dat"), "a comment\n" + table);
    write_file(root("tables/clean.dat"), table);
    m_case.m_bGridOnly = false;
    write_file(root("dirty.dat"), "another comment\n" + table);
    m_case.m_vecRotors[0].m_vecAftSchedule = { 0.25, 0.5, 1.0 };
    m_case.m_vecRotors[0].m_vecAftFile
        = { "tables/dirty.dat", "dirty.dat", root("tables/clean.dat") };
    EXPECT_EQ(run(), kComplete);
    EXPECT_EQ(file("tables/.dirty.dat") + "\n", table); // without its last line end
    EXPECT_EQ(file(".dirty.dat") + "\n", table);
    EXPECT_EQ(file("tables/.clean.dat"), "missing");
    const std::string card = file("Solver_Input/wing.SlvrRot");
    EXPECT_NE(card.find("0.250000          'tables/.dirty.dat'\n"), std::string::npos) << card;
    EXPECT_NE(card.find("0.500000          '.dirty.dat'\n"), std::string::npos) << card;
    EXPECT_NE(card.find("1.000000          '@/tables/clean.dat'\n"), std::string::npos) << card;
    EXPECT_EQ(errors(), "");
}

} // namespace

} // namespace Testing
