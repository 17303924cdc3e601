// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Cleaning.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace {

using namespace Frontend; // NOLINT(google-build-using-namespace): the subject of all tests here
using Testing::write_file;
namespace fs = std::filesystem;

class Cleaning : public ::testing::Test {
protected:
    /// A file that was written so many minutes ago.
    void write(const std::string& name, int minutes = 0) const
    {
        const fs::path path = m_home.path(name);
        fs::create_directories(path.parent_path());
        write_file(path.string(), "");
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::minutes(minutes));
    }
    [[nodiscard]] std::string cleaned() const
    {
        return results_text(results_to_be_cleaned(m_home.path(), "a"));
    }
    [[nodiscard]] std::string replaced(const VRK::ControllerInput& input) const
    {
        return some_of(files_to_be_replaced(m_home.path(), input));
    }
    static long long ago(int minutes)
    {
        const auto time = fs::file_time_type::clock::now() - std::chrono::minutes(minutes);
        return static_cast<long long>(time.time_since_epoch().count());
    }

    Testing::TemporaryDirectory m_home;
};

TEST_F(Cleaning, CountsWhatANewRunTakesAway)
{
    EXPECT_EQ(cleaned(), "");
    for (const char* name : { "Body_Pressure/a.Prs", "Body_Pressure/a.Grd",
             "Body_Pressure/FrcMnt.out", "Body_Pressure/notes.txt", "Body_Pressure/myFrcMnt.out",
             "Field_Solutions/a.Sln", "Field_Solutions/mine/kept.txt",
             "Field_Solutions/Solution_History/a_00001.Sln", "Grid_Output/VRK.grid.dat",
             "Grid_Output/Grid_History/a_00000.Grd", "Process_Output/Vortik_Controller.out",
             "Process_Output/Vortik_Solver.out", "Restarts/a.Rst", "Restarts/.hidden",
             "Restarts/Restart_History/a_00005.Rst", "Rotor_Performance/Performance/TrimLog2.out",
             "Rotor_Performance/Performance/RtrPrfAzm.out",
             "Rotor_Performance/Performance/other.out", "Rotor_Performance/Rotor_Solutions/a.Prf" })
        write(name);
    EXPECT_EQ(cleaned(),
        "Body_Pressure (3 files), Field_Solutions (1 file), Field_Solutions/Solution_History (1 "
        "file), Grid_Output/Grid_History (1 file), Process_Output (1 file), Restarts (1 file), "
        "Restarts/Restart_History (1 file), Rotor_Performance/Performance (2 files), "
        "Rotor_Performance/Rotor_Solutions (1 file)");
}

TEST_F(Cleaning, CountsAllThatIsInADirectoryThatGoes)
{
    write("Process_Output/plots/a.png");
    write("Process_Output/plots/.b.png");
    fs::create_directories(m_home.path("Restarts/Restart_History/empty"));
    EXPECT_EQ(cleaned(), "Process_Output (2 files), Restarts/Restart_History (1 file)");
    EXPECT_EQ(some_of(results_to_be_cleaned(m_home.path(), "a")),
        "Process_Output/plots/.b.png, Process_Output/plots/a.png, "
        "Restarts/Restart_History/empty");
}

TEST_F(Cleaning, CountsTheGridOfAnotherSpellingAndCopiesOfCards)
{
    write("Grid_Output/VRK.Grid.dat");
    EXPECT_EQ(cleaned(), "Grid_Output (1 file)");
    // A copy is looked for beside the cards and taken from the grid's directory.
    write("Solver_Input/backup/a.Tgrid.sav001");
    write("Solver_Input/backup/b.Tgrid.sav001");
    EXPECT_EQ(cleaned(), "Grid_Output (1 file)");
    write("Grid_Output/a.Tgrid.sav001");
    write("Grid_Output/b.Tgrid.sav001");
    EXPECT_EQ(cleaned(), "Grid_Output (1 file), Solver_Input/backup (1 file)");
    EXPECT_EQ(some_of(results_to_be_cleaned(m_home.path(), "a")),
        "Grid_Output/VRK.Grid.dat, Grid_Output/a.Tgrid.sav001");
    // Where nothing is listed the directory goes, with what is hidden in it.
    fs::remove_all(m_home.path("Solver_Input/backup"));
    write("Solver_Input/backup/.mine");
    EXPECT_EQ(some_of(results_to_be_cleaned(m_home.path(), "a")),
        "Grid_Output/VRK.Grid.dat, Solver_Input/backup/.mine");
}

TEST_F(Cleaning, TellsWhatARunWritesAnew)
{
    VRK::ControllerInput input;
    input.m_strCaseName = "a";
    EXPECT_EQ(replaced(input), "");
    for (const char* name : { "Process_Output/Vortik_Controller.err",
             "Process_Output/Vortik_Solver.err", "Grid_Output/VRK.grid.dat", "Grid_Output/other",
             "Grid_Output/a_body.Grd", "Solver_Input/a.SlvrMain", "Solver_Input/a.SlvrRot",
             "Solver_Input/b.SlvrMain", "visc.inp" })
        write(name);
    EXPECT_EQ(replaced(input),
        "Grid_Output/VRK.grid.dat, Grid_Output/a_body.Grd, Process_Output/Vortik_Controller.err, "
        "Solver_Input/a.SlvrMain, Solver_Input/a.SlvrRot");
    input.m_bGridOnly = true;
    EXPECT_EQ(replaced(input),
        "Grid_Output/VRK.grid.dat, Grid_Output/a_body.Grd, Process_Output/Vortik_Controller.err");
    input.m_grid.m_bHybrid = true;
    input.m_grid.m_strViscInput = "layers";
    input.m_grid.m_fpViscInput = Tavro::FilePath(m_home.path("visc.inp"));
    EXPECT_EQ(replaced(input),
        "Grid_Output/VRK.grid.dat, Grid_Output/a_body.Grd, " + m_home.path("visc.inp")
            + ", Process_Output/Vortik_Controller.err");
    write_file(m_home.path("visc.inp"), "layers"); // nothing would change
    EXPECT_EQ(replaced(input),
        "Grid_Output/VRK.grid.dat, Grid_Output/a_body.Grd, Process_Output/Vortik_Controller.err");
    write_file(m_home.path("visc.inp"), "mine");
    EXPECT_EQ(some_of(strangers_among(m_home.path(),
                  viscous_input_to_be_replaced(m_home.path(), input), { { ago(60), ago(40) } })),
        m_home.path("visc.inp"));
    EXPECT_EQ(some_of(strangers_among(m_home.path(),
                  viscous_input_to_be_replaced(m_home.path(), input), { { ago(60), ago(-1) } })),
        "");
    input.m_grid.m_fpViscInput = Tavro::FilePath("v.inp");
    write("Grid_Output/v.inp");
    EXPECT_EQ(some_of(viscous_input_to_be_replaced(m_home.path(), input)), "Grid_Output/v.inp");
    input.m_bRestart = true;
    input.m_bGridOnly = false;
    EXPECT_EQ(replaced(input), "Process_Output/Vortik_Controller.err, Solver_Input/a.SlvrMain");
}

TEST_F(Cleaning, TellsWhichCopiesOfAirfoilTablesAreThereAlready)
{
    VRK::ControllerInput input;
    input.m_vecRotors.resize(2);
    input.m_vecRotors[0].m_vecAftFile = { "a.dat", "tables/b.dat", m_home.path("c.dat") };
    input.m_vecRotors[1].m_vecAftFile = { "a.dat" };
    EXPECT_TRUE(copies_of_tables(m_home.path(), input).empty());
    for (const char* name : { ".a.dat", "tables/.b.dat", ".c.dat", ".d.dat" })
        write(name);
    const auto copies = copies_of_tables(m_home.path(), input);
    EXPECT_EQ(results_text(copies), "copies of airfoil tables (3 files)");
    EXPECT_EQ(some_of(copies), ".a.dat, tables/.b.dat, " + m_home.path(".c.dat"));
}

TEST_F(Cleaning, NamesFiveFilesAtMost)
{
    for (const char* name : { "1", "2", "3", "4", "5" })
        write(std::string("Restarts/") + name);
    EXPECT_EQ(some_of(results_to_be_cleaned(m_home.path(), "a")),
        "Restarts/1, Restarts/2, Restarts/3, Restarts/4, Restarts/5");
    write("Restarts/6");
    EXPECT_EQ(some_of(results_to_be_cleaned(m_home.path(), "a")),
        "Restarts/1, Restarts/2, Restarts/3, Restarts/4, Restarts/5 and 1 more");
}

TEST_F(Cleaning, KnowsAStrangersFileByItsTime)
{
    write("Restarts/restored", 70); // older than all runs
    write("Restarts/first", 50); // of the run that was continued
    write("Restarts/between", 35);
    write("Restarts/a.Rst", 20);
    write("Restarts/copy", 5);
    write("completion", 10);
    write_file(m_home.path("completion"), "8\n");
    fs::last_write_time(
        m_home.path("completion"), fs::file_time_type::clock::now() - std::chrono::minutes(10));
    RunRecord record;
    record.completionFile = m_home.path("completion");
    record.since = ago(30);
    record.earlier = { { ago(60), ago(40) } };
    const auto strangers = [&] {
        return some_of(strangers_among(m_home.path(), results_to_be_cleaned(m_home.path(), "a"),
            work_times(m_home.path(), record)));
    };
    EXPECT_EQ(strangers(), "Restarts/between, Restarts/copy, Restarts/restored");
    // Of a run that has died it is known by its logs how long it worked.
    write_file(m_home.path("completion"), "-9\n");
    fs::last_write_time(
        m_home.path("completion"), fs::file_time_type::clock::now() - std::chrono::minutes(29));
    EXPECT_EQ(strangers(), "Restarts/a.Rst, Restarts/between, Restarts/copy, Restarts/restored");
    write("Process_Output/Vortik_Solver.out", 15);
    EXPECT_EQ(strangers(), "Restarts/between, Restarts/copy, Restarts/restored");
    // Or by who has seen its end.
    write("Restarts/late", 0);
    write_file(m_home.path(".vortik-run"), "");
    note_end(m_home.path());
    EXPECT_EQ(strangers(), "Restarts/between, Restarts/restored");
}

} // namespace
