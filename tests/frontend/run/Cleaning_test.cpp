// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Cleaning.h"
#include "frontend/run/OwnFiles.h"
#include "tests/airfoil/TableTexts.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace {

using namespace Frontend; // NOLINT(google-build-using-namespace): the subject of all tests here
using Testing::write_file;
namespace fs = std::filesystem;

/// Whether the library tells the time of a file to less than a second.
bool keeps_parts_of_seconds(const std::string& probe)
{
    write_file(probe, "");
    const auto whole = std::chrono::floor<std::chrono::seconds>(fs::file_time_type::clock::now());
    fs::last_write_time(probe, whole + std::chrono::milliseconds(250));
    const bool keeps = fs::last_write_time(probe) != whole;
    fs::remove(probe);
    return keeps;
}

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
        std::string text;
        for (const std::string& file : files_of(joined(cards_to_be_replaced(m_home.path(), input),
                 input_to_be_replaced(m_home.path(), input))))
            text += (text.empty() ? "" : ", ") + file;
        return text;
    }
    static long long ago(int minutes)
    {
        const auto time = fs::file_time_type::clock::now() - std::chrono::minutes(minutes);
        return static_cast<long long>(time.time_since_epoch().count());
    }

    Testing::TemporaryDirectory m_home;
};

TEST_F(Cleaning, CountsAndNamesWhatANewRunTakesAway)
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
        "Body_Pressure (3 files: FrcMnt.out, a.Grd, a.Prs), Field_Solutions (1 file: a.Sln), "
        "Field_Solutions/Solution_History (1 file: a_00001.Sln), Grid_Output/Grid_History (1 file: "
        "a_00000.Grd), Process_Output (1 file: Vortik_Solver.out), Restarts (1 file: a.Rst), "
        "Restarts/Restart_History (1 file: a_00005.Rst), Rotor_Performance/Performance (2 files: "
        "RtrPrfAzm.out, TrimLog2.out), Rotor_Performance/Rotor_Solutions (1 file: a.Prf)");
}

TEST_F(Cleaning, CountsAllThatIsInADirectoryThatGoes)
{
    write("Process_Output/plots/a.png");
    write("Process_Output/plots/.b.png");
    fs::create_directories(m_home.path("Restarts/Restart_History/empty"));
    EXPECT_EQ(cleaned(),
        "Process_Output (2 files: plots/.b.png, plots/a.png), Restarts/Restart_History (1 file: "
        "empty)");
    EXPECT_EQ(some_of(results_to_be_cleaned(m_home.path(), "a")),
        "Process_Output/plots/.b.png, Process_Output/plots/a.png, "
        "Restarts/Restart_History/empty");
}

TEST_F(Cleaning, CountsTheGridOfAnotherSpellingAndCopiesOfCards)
{
    write("Grid_Output/VRK.Grid.dat");
    const std::string grid = "Grid_Output (1 file: VRK.Grid.dat)";
    EXPECT_EQ(cleaned(), grid);
    // A copy is looked for beside the cards and taken from the grid's directory.
    write("Solver_Input/backup/a.Tgrid.sav001");
    write("Solver_Input/backup/b.Tgrid.sav001");
    EXPECT_EQ(cleaned(), grid);
    write("Grid_Output/a.Tgrid.sav001");
    write("Grid_Output/b.Tgrid.sav001");
    EXPECT_EQ(cleaned(), grid + ", Solver_Input/backup (1 file: Grid_Output/a.Tgrid.sav001)");
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
        "Solver_Input/a.SlvrMain");
    input.m_vecRotors.resize(1);
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
        "Grid_Output/VRK.grid.dat, Grid_Output/a_body.Grd, Process_Output/Vortik_Controller.err, "
            + m_home.path("visc.inp"));
    write_file(m_home.path("visc.inp"), "layers"); // nothing would change
    EXPECT_EQ(replaced(input),
        "Grid_Output/VRK.grid.dat, Grid_Output/a_body.Grd, Process_Output/Vortik_Controller.err");
    write_file(m_home.path("visc.inp"), "mine");
    EXPECT_EQ(some_of(strangers_among(m_home.path(), input_to_be_replaced(m_home.path(), input),
                  { { ago(60), ago(40) } })),
        m_home.path("visc.inp"));
    EXPECT_EQ(some_of(strangers_among(m_home.path(), input_to_be_replaced(m_home.path(), input),
                  { { ago(60), ago(-1) } })),
        "");
    input.m_grid.m_fpViscInput = Tavro::FilePath("v.inp");
    write("Grid_Output/v.inp");
    EXPECT_EQ(some_of(input_to_be_replaced(m_home.path(), input)), "Grid_Output/v.inp");
    input.m_bRestart = true;
    input.m_bGridOnly = false;
    EXPECT_EQ(replaced(input), "Process_Output/Vortik_Controller.err, Solver_Input/a.SlvrMain");
}

TEST_F(Cleaning, TellsWhatAnAdaptiveRunWritesAnewInEachCycle)
{
    VRK::ControllerInput input;
    input.m_strCaseName = "a";
    input.m_vecRotors.resize(1);
    for (const char* name : { "Grid_Output/VRK.grid.dat", "Grid_Output/a.treegen",
             "Grid_Output/a.treegen-adapted.old", "Grid_Output/GeomBC.old.dat",
             "Solver_Input/a.AdptrMain", "Solver_Input/a.SlvrRot", "Solver_Input/AdaptBoxes.dat",
             "Solver_Input/Label.dat", "Solver_Input/ParmFlw.h", "Solver_Input/ParmFlw.old.h" })
        write(name);
    EXPECT_EQ(replaced(input),
        "Grid_Output/VRK.grid.dat, Grid_Output/a.treegen, Solver_Input/ParmFlw.h, "
        "Solver_Input/a.SlvrRot");
    input.m_bRestart = true; // of a grid that stays
    EXPECT_EQ(replaced(input), "");
    input.m_adapt.m_bAdaptive = true;
    EXPECT_EQ(replaced(input),
        "Grid_Output/GeomBC.old.dat, Grid_Output/VRK.grid.dat, Grid_Output/a.treegen-adapted.old, "
        "Solver_Input/AdaptBoxes.dat, Solver_Input/Label.dat, Solver_Input/ParmFlw.h, "
        "Solver_Input/ParmFlw.old.h, Solver_Input/a.AdptrMain, Solver_Input/a.SlvrRot");
}

TEST_F(Cleaning, TellsWhichCopiesOfAirfoilTablesWouldTakeThePlaceOfOtherBytes)
{
    const std::string copy = TableTexts::without_last_line_end(TableTexts::kTable);
    VRK::ControllerInput input;
    input.m_vecRotors.resize(2);
    input.m_vecRotors[0].m_vecAftFile = { "a.dat", "tables/b.dat", m_home.path("c.dat"), "d.dat" };
    input.m_vecRotors[1].m_vecAftFile = { "a.dat" };
    fs::create_directories(m_home.path("tables"));
    for (const char* name : { "a.dat", "tables/b.dat", "c.dat", "d.dat" })
        write_file(m_home.path(name), "measured\r\nin 1980\n" + TableTexts::kTable);
    const auto copies = [&] { return input_to_be_replaced(m_home.path(), input); };
    EXPECT_TRUE(copies().empty()) << some_of(copies());
    for (const char* name : { ".a.dat", "tables/.b.dat", ".c.dat", ".e.dat" })
        write_file(m_home.path(name), "mine");
    fs::create_directories(m_home.path(".d.dat")); // no file can take its place
    EXPECT_EQ(results_text(copies()),
        "copies of airfoil tables (3 files: .a.dat, tables/.b.dat, " + m_home.path(".c.dat") + ")");
    write_file(m_home.path(".a.dat"), copy); // nothing would change
    EXPECT_EQ(some_of(copies()), "tables/.b.dat, " + m_home.path(".c.dat"));
    write_file(m_home.path("tables/b.dat"),
        TableTexts::kTable); // nothing stands before it, so it is used itself
    EXPECT_EQ(some_of(copies()), m_home.path(".c.dat"));
    write_file(m_home.path("c.dat"), "no table\n" + TableTexts::kControl + TableTexts::kLift);
    EXPECT_EQ(some_of(copies()), "");
    write_file(m_home.path(".a.dat"), copy + "\n");
    EXPECT_EQ(some_of(copies()), ".a.dat");
    input.m_bRestart = true; // makes them as well
    EXPECT_EQ(some_of(copies()), ".a.dat");
    // A copy would go through it into the table.
    fs::remove(m_home.path(".a.dat"));
    Testing::make_link(m_home.path("a.dat"), m_home.path(".a.dat"));
    EXPECT_EQ(some_of(copies()), ".a.dat");
    fs::remove(m_home.path(".a.dat"));
    write_file(m_home.path(".a.dat"), copy + "\n");
    // A table that a rotor has by this name already stays as it is.
    input.m_vecRotors[0].m_vecAftFile = { ".a.dat" };
    EXPECT_EQ(some_of(copies()), "");
}

TEST_F(Cleaning, NamesFiveFilesOrTheFirstThreeOfMore)
{
    for (const char* name : { "1", "2", "3", "4", "5" })
        write(std::string("Restarts/") + name);
    EXPECT_EQ(some_of(results_to_be_cleaned(m_home.path(), "a")),
        "Restarts/1, Restarts/2, Restarts/3, Restarts/4, Restarts/5");
    EXPECT_EQ(cleaned(), "Restarts (5 files: 1, 2, 3, 4, 5)");
    write("Restarts/6");
    EXPECT_EQ(some_of(results_to_be_cleaned(m_home.path(), "a")),
        "Restarts/1, Restarts/2, Restarts/3 and 3 more");
    EXPECT_EQ(cleaned(), "Restarts (6 files: 1, 2, 3 and 3 more)");
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

class OwnFiles : public Cleaning {
protected:
    OwnFiles()
    {
        m_input.m_strCaseName = "a";
        m_input.m_vecRotors.resize(1);
        m_record.completionFile = m_home.path("completion");
        m_record.since = ago(30);
        m_record.found.emplace();
        end_with("8\n");
    }
    /// The last run's last word, ten minutes ago.
    void end_with(const std::string& word) const
    {
        write("completion");
        write_file(m_home.path("completion"), word);
        fs::last_write_time(
            m_home.path("completion"), fs::file_time_type::clock::now() - std::chrono::minutes(10));
    }
    [[nodiscard]] std::string strange() const
    {
        return some_of(
            strange_cards(m_home.path(), m_record, cards_to_be_replaced(m_home.path(), m_input)));
    }
    [[nodiscard]] std::string strange_to_clean(const RunRecord& record) const
    {
        return some_of(
            strange_results(m_home.path(), record, results_to_be_cleaned(m_home.path(), "a")));
    }
    /// What a run of the case that begins now notes, by name.
    [[nodiscard]] std::string noted(RunRecord& begun) const
    {
        note_files(m_home.path(), m_input, m_record, begun);
        std::string text;
        for (const FileMark& mark : *begun.found)
            text += (text.empty() ? "" : ", ") + mark.file;
        return text;
    }

    VRK::ControllerInput m_input;
    RunRecord m_record;
};

TEST_F(OwnFiles, AreCardsThatARunHasWrittenAndNobodyHasChangedSince)
{
    write("Solver_Input/a.SlvrMain", 20);
    write("Solver_Input/a.SlvrRot", 5);
    write("Solver_Input/a.Tgrid", 40);
    write("Grid_Output/VRK.grid.dat", 5);
    write("Grid_Output/TreeGen.err", 5); // a log
    write("Process_Output/Vortik_Controller.out", 5);
    EXPECT_EQ(strange(), "Grid_Output/VRK.grid.dat, Solver_Input/a.SlvrRot, Solver_Input/a.Tgrid");
    // The last run has ended before it came to a card of the run before it.
    m_record.found->push_back(*mark_of(m_home.path(), "Solver_Input/a.Tgrid"));
    EXPECT_EQ(strange(), "Grid_Output/VRK.grid.dat, Solver_Input/a.SlvrRot");
    m_record.found->back().size = 1;
    EXPECT_EQ(strange(), "Grid_Output/VRK.grid.dat, Solver_Input/a.SlvrRot, Solver_Input/a.Tgrid");
    // What an older front end has not noted nobody is asked about.
    m_record.found.reset();
    EXPECT_EQ(strange(), "");
    m_record.found.emplace();
    m_record.since = 0;
    EXPECT_EQ(strange(), "");
}

TEST_F(OwnFiles, AreKnownByTimesOfWhichAnArchiveHasKeptWholeSeconds)
{
    if (!keeps_parts_of_seconds(m_home.path("probe")))
        GTEST_SKIP() << "times of files are whole seconds here";
    const auto second = std::chrono::milliseconds(1000);
    const auto whole = std::chrono::floor<std::chrono::seconds>(
        fs::file_time_type::clock::now() - std::chrono::minutes(30));
    const auto count = [](fs::file_time_type time) {
        return static_cast<long long>(time.time_since_epoch().count());
    };
    write("Solver_Input/a.SlvrMain");
    write("Solver_Input/a.SlvrRot");
    const auto set = [&](const std::string& name, fs::file_time_type time) {
        fs::last_write_time(m_home.path(name), time);
    };
    m_record.since = count(whole + second / 2); // the card came a little later
    set("Solver_Input/a.SlvrMain", whole);
    set("Solver_Input/a.SlvrRot", whole - 20 * second + second / 4);
    m_record.found->push_back(*mark_of(m_home.path(), "Solver_Input/a.SlvrRot"));
    EXPECT_EQ(strange(), "");
    set("Solver_Input/a.SlvrRot", whole - 20 * second);
    EXPECT_EQ(strange(), "");
    set("Solver_Input/a.SlvrMain", whole + second / 4); // no whole second: it was before the run
    set("Solver_Input/a.SlvrRot", whole - 19 * second);
    EXPECT_EQ(strange(), "Solver_Input/a.SlvrMain, Solver_Input/a.SlvrRot");
}

TEST_F(OwnFiles, AreNotThoseThatComeAsSoonAsTheEndHasBeenSeen)
{
    if (!keeps_parts_of_seconds(m_home.path("probe")))
        GTEST_SKIP() << "times of files are whole seconds here";
    end_with("-8\n"); // the solver has ended after the controller
    write("Restarts/a.Rst");
    write_file(m_home.path(".vortik-run"), "");
    note_end(m_home.path());
    write_file(m_home.path("Restarts/mine"), "");
    EXPECT_EQ(strange_to_clean(m_record), "Restarts/mine");
}

TEST_F(OwnFiles, OfARunThatDiedAreWhatItsLastProgramMayHaveWrittenAfterIt)
{
    end_with("-9\n");
    write("Grid_Output/VRK.grid.dat", 1);
    write("Grid_Output/a.treegen", 1);
    write("Grid_Output/GeomBC.dat", 40);
    write("Solver_Input/ParmFlw.h", 1);
    write("Solver_Input/a.SlvrRot", 1);
    EXPECT_EQ(strange(), "Grid_Output/GeomBC.dat, Grid_Output/a.treegen, Solver_Input/a.SlvrRot");
    end_with("-3\n"); // the grid generator has ended before the controller
    EXPECT_EQ(strange(),
        "Grid_Output/GeomBC.dat, Grid_Output/VRK.grid.dat, Grid_Output/a.treegen, "
        "Solver_Input/ParmFlw.h, Solver_Input/a.SlvrRot");
}

TEST_F(OwnFiles, OfAllCasesOfADirectoryAreNotedByTheNextRun)
{
    write("Solver_Input/a.SlvrMain", 20);
    write("Solver_Input/a.Tgrid", 40); // found by the last run
    write("Solver_Input/b.SlvrMain", 50); // of another case, found by the last run
    write("Solver_Input/mine.txt", 50);
    write("Grid_Output/VRK.grid.dat", 5); // changed, but about to be replaced
    write("Grid_Output/TreeGen.out", 20);
    for (const char* file : { "Solver_Input/a.Tgrid", "Solver_Input/b.SlvrMain" })
        m_record.found->push_back(*mark_of(m_home.path(), file));
    write("Solver_Input/a.Tgrid", 20); // written by it at last
    RunRecord begun;
    EXPECT_EQ(noted(begun),
        "Grid_Output/VRK.grid.dat, Solver_Input/a.SlvrMain, Solver_Input/a.Tgrid, "
        "Solver_Input/b.SlvrMain");
    // Where that run dies at once, all is as it was.
    begun.completionFile = m_record.completionFile;
    begun.since = ago(0);
    m_record = begun;
    EXPECT_EQ(strange(), "");
    write("Solver_Input/a.SlvrMain", 0);
    write("Grid_Output/VRK.grid.dat", 3);
    m_record.since = ago(-1);
    EXPECT_EQ(strange(), "Grid_Output/VRK.grid.dat, Solver_Input/a.SlvrMain");
    m_input.m_strCaseName = "b";
    EXPECT_EQ(strange(), "Grid_Output/VRK.grid.dat");
}

TEST_F(OwnFiles, AreResultsThatTheLastRunDidNotComeToClean)
{
    write("Restarts/a.Rst", 20);
    write("Field_Solutions/a.Sln", 5); // somebody's, but the next run was forced
    EXPECT_EQ(strange_to_clean(m_record), "Field_Solutions/a.Sln");
    RunRecord begun;
    begun.completionFile = m_home.path("none");
    begun.since = ago(0);
    note_files(m_home.path(), m_input, m_record, begun);
    EXPECT_EQ(strange_to_clean(begun), "");
    RunRecord restarted; // takes nothing away, and knows as much
    restarted.completionFile = begun.completionFile;
    restarted.since = ago(0);
    m_input.m_bRestart = true;
    note_files(m_home.path(), m_input, begun, restarted);
    EXPECT_EQ(strange_to_clean(restarted), "");
    // It came to that, and somebody has put one of them back.
    fs::remove(m_home.path("Field_Solutions/a.Sln"));
    EXPECT_EQ(strange_to_clean(begun), "Restarts/a.Rst");
    write("Field_Solutions/a.Sln", 4);
    EXPECT_EQ(strange_to_clean(begun), "Field_Solutions/a.Sln, Restarts/a.Rst");
}

} // namespace
