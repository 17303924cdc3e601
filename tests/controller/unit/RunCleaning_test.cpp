// SPDX-License-Identifier: Apache-2.0
#include "controller/RunCleaning.h"

#include "tests/controller/unit/RunFixture.h"
#include "tests/support/Surroundings.h"

#include <filesystem>

using namespace Testing;

namespace {

class RunCleaning : public RunFixture {
protected:
    /// Cleans a model directory with these entries, and tells which are left beside the three
    /// directories of every run.
    std::string left_of(std::initializer_list<const char*> names)
    {
        make_tree(m_root.path(), names);
        clean_run_files(m_input);
        std::string left = " " + tree_of(m_root.path()) + " ";
        for (const std::string name : { "Grid_Output/", "Process_Output/", "Solver_Input/" }) {
            const auto place = left.find(" " + name + " ");
            if (place == std::string::npos)
                return name + " is missing";
            left.erase(place, name.size() + 1);
        }
        return left == " " ? "" : left.substr(1, left.size() - 2);
    }
};

} // namespace

TEST_F(RunCleaning, EmptyModelDirectoryGainsThreeDirectories)
{
    clean_run_files(m_input);
    EXPECT_EQ(tree_of(m_root.path()), "Grid_Output/ Process_Output/ Solver_Input/");
}

TEST_F(RunCleaning, GridOutputBecomesTheWorkingDirectory)
{
    clean_run_files(m_input);
    EXPECT_EQ(std::filesystem::current_path().string(),
        std::filesystem::canonical(at("Grid_Output")).string());
}

TEST_F(RunCleaning, ProcessOutputKeepsWhatTheControllerWrites)
{
    EXPECT_EQ(
        left_of({ "Process_Output/Vortik_Controller.out", "Process_Output/Vortik_Controller.err",
            "Process_Output/old_Controller.d/log", "Process_Output/vortik_controller.out",
            "Process_Output/Vortik_Solver.out", "Process_Output/deep/er/log" }),
        "Process_Output/Vortik_Controller.err Process_Output/Vortik_Controller.out "
        "Process_Output/old_Controller.d/ Process_Output/old_Controller.d/log");
}

TEST_F(RunCleaning, HiddenEntriesAreNotSeen)
{
    EXPECT_EQ(left_of({ "Process_Output/.log", "Restarts/.Rst", "Body_Pressure/.Prs",
                  "Grid_Output/Grid_History/.Grd", "Field_Solutions/Solution_History/.sln" }),
        "Body_Pressure/ Body_Pressure/.Prs Field_Solutions/ Field_Solutions/Solution_History/ "
        "Field_Solutions/Solution_History/.sln Grid_Output/Grid_History/ "
        "Grid_Output/Grid_History/.Grd Process_Output/.log Restarts/ Restarts/.Rst");
}

TEST_F(RunCleaning, DirectoryWithAHiddenFileLosesWhatIsSeenInIt)
{
    EXPECT_EQ(left_of({ "Process_Output/d/.keep", "Process_Output/d/log", "Process_Output/log" }),
        "Process_Output/d/ Process_Output/d/.keep");
}

TEST_F(RunCleaning, GridFileGoesByItsUpperCaseNameOnly)
{
    if (!case_tells_names_apart())
        GTEST_SKIP() << "the two names are one here";
    EXPECT_EQ(left_of({ "Grid_Output/VRK.Grid.dat", "Grid_Output/VRK.grid.dat",
                  "Grid_Output/case_body.Grd" }),
        "Grid_Output/VRK.grid.dat Grid_Output/case_body.Grd");
}

TEST_F(RunCleaning, DirectoryOfTheGridFilesNameGoesToo)
{
    EXPECT_EQ(left_of({ "Grid_Output/VRK.Grid.dat/file" }), "");
}

TEST_F(RunCleaning, GridHistoryLosesEveryEntryAndStays)
{
    EXPECT_EQ(left_of({ "Grid_Output/Grid_History/case_00000.Grd",
                  "Grid_Output/Grid_History/readme", "Grid_Output/Grid_History/d/e/f" }),
        "Grid_Output/Grid_History/");
}

TEST_F(RunCleaning, FieldSolutionsLoseFilesAndKeepSubdirectories)
{
    EXPECT_EQ(left_of({ "Field_Solutions/case.sln", "Field_Solutions/plots/a" }),
        "Field_Solutions/ Field_Solutions/plots/ Field_Solutions/plots/a");
}

TEST_F(RunCleaning, SolutionHistoryLosesSubdirectoriesToo)
{
    EXPECT_EQ(left_of({ "Field_Solutions/Solution_History/case_00010.sln",
                  "Field_Solutions/Solution_History/plots/a" }),
        "Field_Solutions/ Field_Solutions/Solution_History/");
}

TEST_F(RunCleaning, ResidualHistoriesGo)
{
    EXPECT_EQ(left_of({ "Process_Output/MassRsdl.dat", "Process_Output/MomRsdl.dat",
                  "Process_Output/VelRsdl.dat", "Process_Output/TurbRsdl.dat" }),
        "");
}

TEST_F(RunCleaning, BodyPressureLosesTwoKindsOfFiles)
{
    EXPECT_EQ(left_of({ "Body_Pressure/case.Prs", "Body_Pressure/case_00010_body.Grd",
                  "Body_Pressure/case.Prs.old", "Body_Pressure/a.Prs/x", "Body_Pressure/b.Grd/x" }),
        "Body_Pressure/ Body_Pressure/a.Prs/ Body_Pressure/a.Prs/x Body_Pressure/b.Grd/ "
        "Body_Pressure/b.Grd/x Body_Pressure/case.Prs.old");
}

TEST_F(RunCleaning, EndingsInOtherLettersAreOtherKindsOfFiles)
{
    if (!case_tells_names_apart())
        GTEST_SKIP() << "they are the same here";
    EXPECT_EQ(left_of({ "Body_Pressure/case.prs" }), "Body_Pressure/ Body_Pressure/case.prs");
}

TEST_F(RunCleaning, ForceHistoryGoes)
{
    EXPECT_EQ(left_of({ "Body_Pressure/FrcMnt.out", "Body_Pressure/FrcMnt.out2" }),
        "Body_Pressure/ Body_Pressure/FrcMnt.out2");
}

TEST_F(RunCleaning, ForceHistoryThatIsADirectoryStays)
{
    EXPECT_EQ(left_of({ "Body_Pressure/FrcMnt.out/x" }),
        "Body_Pressure/ Body_Pressure/FrcMnt.out/ Body_Pressure/FrcMnt.out/x");
}

TEST_F(RunCleaning, RotorSolutionsLoseOneKindOfFiles)
{
    EXPECT_EQ(left_of({ "Rotor_Performance/Rotor_Solutions/r_00010.Prf",
                  "Rotor_Performance/Rotor_Solutions/r.prf",
                  "Rotor_Performance/Rotor_Solutions/d.Prf/x", "Rotor_Performance/r.Prf" }),
        "Rotor_Performance/ Rotor_Performance/Rotor_Solutions/ "
        "Rotor_Performance/Rotor_Solutions/d.Prf/ Rotor_Performance/Rotor_Solutions/d.Prf/x "
        "Rotor_Performance/Rotor_Solutions/r.prf Rotor_Performance/r.Prf");
}

TEST_F(RunCleaning, RotorPerformanceLosesTwoFiles)
{
    EXPECT_EQ(left_of({ "Rotor_Performance/Performance/TrimLog2.out",
                  "Rotor_Performance/Performance/RtrPrfAzm.out",
                  "Rotor_Performance/Performance/TrimLog.out" }),
        "Rotor_Performance/ Rotor_Performance/Performance/ "
        "Rotor_Performance/Performance/TrimLog.out");
}

TEST_F(RunCleaning, RotorPerformanceKeepsDirectoriesOfThoseNames)
{
    EXPECT_EQ(left_of({ "Rotor_Performance/Performance/TrimLog2.out/x",
                  "Rotor_Performance/Performance/RtrPrfAzm.out/" }),
        "Rotor_Performance/ Rotor_Performance/Performance/ "
        "Rotor_Performance/Performance/RtrPrfAzm.out/ "
        "Rotor_Performance/Performance/TrimLog2.out/ "
        "Rotor_Performance/Performance/TrimLog2.out/x");
}

TEST_F(RunCleaning, RestartsLoseFilesOfEveryNameAndKeepSubdirectories)
{
    EXPECT_EQ(left_of({ "Restarts/case.Rst", "Restarts/case.old.Rst", "Restarts/notes",
                  "Restarts/kept/case.Rst" }),
        "Restarts/ Restarts/kept/ Restarts/kept/case.Rst");
}

TEST_F(RunCleaning, RestartHistoryLosesSubdirectoriesToo)
{
    EXPECT_EQ(left_of({ "Restarts/Restart_History/case_00010.Rst",
                  "Restarts/Restart_History/kept/case.Rst" }),
        "Restarts/ Restarts/Restart_History/");
}

TEST_F(RunCleaning, AdapterLogsGo)
{
    EXPECT_EQ(left_of({ "Process_Output/Adapt.err", "Process_Output/Adapt.out" }), "");
}

TEST_F(RunCleaning, FilesOutsideTheRunsDirectoriesStay)
{
    EXPECT_EQ(left_of({ "case.stl", "Solver_Input/case.SlvrMain", "Grid_Output/case.treegen",
                  "Debug_Files/trace", "Polars/naca.aft" }),
        "Debug_Files/ Debug_Files/trace Grid_Output/case.treegen Polars/ Polars/naca.aft "
        "Solver_Input/case.SlvrMain case.stl");
}

// The three cards have one base, "case.sav"; the working directory is that of the grid by then.
TEST_F(RunCleaning, BackupsStayAndTheirNamesakesInTheGridOutputGo)
{
    EXPECT_EQ(left_of({ "Solver_Input/backup/case.sav1", "Grid_Output/case.sav1",
                  "Grid_Output/case.sav2" }),
        "Grid_Output/case.sav2 Solver_Input/backup/ Solver_Input/backup/case.sav1");
}

TEST_F(RunCleaning, EmptyBackupDirectoryGoes)
{
    EXPECT_EQ(
        left_of({ "Solver_Input/backup/", "Solver_Input/case.Tgrid" }), "Solver_Input/case.Tgrid");
}

TEST_F(RunCleaning, FilesInThePlaceOfDirectoriesArePassedOver)
{
    EXPECT_EQ(left_of({ "Grid_Output/Grid_History", "Field_Solutions", "Body_Pressure",
                  "Rotor_Performance", "Restarts", "Solver_Input/backup" }),
        "Body_Pressure Field_Solutions Grid_Output/Grid_History Restarts Rotor_Performance "
        "Solver_Input/backup");
}

TEST_F(RunCleaning, LinksGoAndWhatTheyLeadToStays)
{
    make_tree(m_root.path(), { "precious/Rst", "Restarts/", "Grid_Output/Grid_History/" });
    make_link(at("precious/Rst"), at("Restarts/file"));
    make_link(at("precious"), at("Restarts/directory")); // counts as a directory
    make_link(at("nowhere"), at("Restarts/dangling"));
    make_link(at("precious"), at("Grid_Output/Grid_History/directory"));
    EXPECT_EQ(left_of({}),
        "Grid_Output/Grid_History/ Restarts/ Restarts/directory precious/ precious/Rst");
}

TEST_F(RunCleaning, ReadOnlyFilesGo)
{
    if (!modes_close_files())
        GTEST_SKIP() << "modes do not close files here";
    make_tree(m_root.path(), { "Restarts/case.Rst", "Body_Pressure/case.Prs" });
    open_to_all(m_root.path());
    set_mode(at("Restarts/case.Rst"), 0444);
    set_mode(at("Body_Pressure/case.Prs"), 0);
    const Outcome outcome = as_ordinary_user([this] { clean_run_files(m_input); });
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(tree_of(m_root.path()),
        "Body_Pressure/ Grid_Output/ Process_Output/ Restarts/ Solver_Input/");
}

TEST_F(RunCleaning, ReadOnlyDirectoryKeepsItsFilesAndTheRestIsCleaned)
{
    if (!modes_close_files())
        GTEST_SKIP() << "modes do not close files here";
    make_tree(m_root.path(), { "Field_Solutions/a.sln", "Restarts/case.Rst" });
    open_to_all(m_root.path());
    set_mode(at("Field_Solutions"), 0555);
    const Outcome outcome = as_ordinary_user([this] { clean_run_files(m_input); });
    set_mode(at("Field_Solutions"), 0777);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(tree_of(m_root.path()),
        "Field_Solutions/ Field_Solutions/a.sln Grid_Output/ Process_Output/ Restarts/ "
        "Solver_Input/");
}

TEST_F(RunCleaning, CleaningAnEmptyDirectoryTwiceChangesNothing)
{
    EXPECT_EQ(left_of({}), "");
    EXPECT_EQ(left_of({}), "");
}
