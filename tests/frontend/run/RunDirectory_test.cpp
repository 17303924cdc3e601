// SPDX-License-Identifier: Apache-2.0
#include "frontend/run/Cleaning.h"
#include "frontend/run/EarlierRun.h"
#include "frontend/run/Follow.h"
#include "frontend/run/LogEnds.h"
#include "frontend/run/OwnFiles.h"
#include "frontend/run/RunInSight.h"
#include "tavrobase/SystemUtilities.h"
#include "tavrobase/platform/Processes.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Surroundings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <limits>

#include <unistd.h>

namespace {

using namespace Frontend; // NOLINT(google-build-using-namespace): the subject of all tests here
using Testing::TemporaryDirectory;
using Testing::write_file;

TEST(RunDirectory, IsFoundByItselfByAFileInItAndThroughLinks)
{
    const TemporaryDirectory home;
    const std::string root = std::filesystem::canonical(home.path()).string();
    write_file(root + "/case.toml", "");
    Testing::make_link(root, home.path("link"));
    EXPECT_EQ(run_root(root + "/"), root);
    EXPECT_EQ(run_root(root + "/case.toml"), root);
    EXPECT_EQ(run_root(home.path("link")), root);
    Testing::make_directory(root + "/inner");
    Testing::make_link(root + "/case.toml", root + "/inner/case.toml");
    EXPECT_EQ(run_root(root + "/inner/case.toml"), root + "/inner");
    EXPECT_EQ(run_root(root + "/none"), std::nullopt);
    EXPECT_EQ(run_root("/"), std::nullopt);
    EXPECT_EQ(link_key(root).Get(), root + "/");
}

TEST(RunDirectory, RemembersARunInASmallTextFile)
{
    const TemporaryDirectory home;
    const RunRecord record { "/a b/case.toml", "cube", "/a b/.vortik-completion", "host", 12,
        "12@34", 5, -70, { { -90, -80 } }, { "1a", "2b", "3c" },
        { { "Grid_Output/Tree Gen.err", 17, "4d" } },
        { { { "Solver_Input/my cube.Tgrid", 3, -75 } } }, "5e" };
    std::string reason;
    ASSERT_TRUE(remember_run(home.path(), record, reason));
    const std::string text
        = "vortik run 1\ncase /a b/case.toml\nname cube\ncompletion /a b/.vortik-completion\n"
          "host host\ncontroller 12\nmark 12@34\nlink 5\nsince -70\ngrid 1a\nboundaries 2b\n"
          "rotors 3c\nearlier -90 -80\nlog 17 4d Grid_Output/Tree Gen.err\nuncleaned 5e\n"
          "found 1\nfile -75 3 Solver_Input/my cube.Tgrid\n";
    EXPECT_EQ(Testing::read_file(home.path(".vortik-run")), text);
    EXPECT_EQ(remembered_text(home.path()), text);
    const auto again = recall_run(home.path());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->caseFile, record.caseFile);
    EXPECT_EQ(again->caseName, record.caseName);
    EXPECT_EQ(again->completionFile, record.completionFile);
    EXPECT_EQ(again->host, record.host);
    EXPECT_EQ(again->controller, 12);
    EXPECT_EQ(again->mark, record.mark);
    EXPECT_EQ(again->link, 5U);
    EXPECT_EQ(again->since, -70);
    ASSERT_EQ(again->earlier.size(), 1U);
    EXPECT_EQ(again->earlier[0].begin, -90);
    EXPECT_EQ(again->earlier[0].end, -80);
    EXPECT_EQ(again->built.grid + again->built.boundaries + again->built.rotors, "1a2b3c");
    ASSERT_EQ(again->logs.size(), 1U);
    EXPECT_EQ(again->logs[0].file, "Grid_Output/Tree Gen.err");
    EXPECT_EQ(again->logs[0].size, 17U);
    EXPECT_EQ(again->logs[0].digest, "4d");
    ASSERT_TRUE(again->found);
    ASSERT_EQ(again->found->size(), 1U);
    EXPECT_EQ(again->found->front().file, "Solver_Input/my cube.Tgrid");
    EXPECT_EQ(again->found->front().size, 3U);
    EXPECT_EQ(again->found->front().time, -75);
    EXPECT_EQ(again->uncleaned, "5e");
    EXPECT_TRUE(remember_text(home.path(), "", reason));
    EXPECT_FALSE(Testing::file_exists(home.path(".vortik-run")));
    EXPECT_TRUE(remember_text(home.path(), "", reason)); // nothing to take away
}

TEST(RunDirectory, KnowsARunOfAnOlderFrontEndWithoutItsTimes)
{
    const TemporaryDirectory home;
    write_file(home.path(".vortik-run"),
        "vortik run 1\ncase /c\nname cube\ncompletion /w\nhost h\ncontroller 12\nmark m\nlink 5\n"
        "earlier x 1\nlog x\n");
    const auto record = recall_run(home.path());
    ASSERT_TRUE(record);
    EXPECT_EQ(record->since, 0);
    EXPECT_TRUE(record->earlier.empty());
    EXPECT_TRUE(record->logs.empty());
    EXPECT_FALSE(record->found);
    EXPECT_EQ(record->built.grid, "");
    EXPECT_TRUE(work_times(home.path(), *record).empty());
}

TEST(RunDirectory, KnowsNoRunFromAMissingOrDamagedFile)
{
    const TemporaryDirectory home;
    EXPECT_FALSE(recall_run(home.path()));
    for (const char* text : { "", "vortik run 2\n", "vortik run 1\n",
             "vortik run 1\ncompletion /c\ncontroller x\nlink 5\n",
             "vortik run 1\ncompletion /c\ncontroller 12\nlink -5\n" }) {
        write_file(home.path(".vortik-run"), text);
        EXPECT_FALSE(recall_run(home.path())) << text;
    }
}

TEST(RunDirectory, CompletionWordIsALineWithANumberAlone)
{
    const TemporaryDirectory home;
    const auto word = [&](const std::string& text) {
        write_file(home.path("completion"), text);
        return completion_word(home.path("completion"));
    };
    EXPECT_EQ(word("-9\n"), -9);
    EXPECT_EQ(word("8\n"), 8);
    EXPECT_EQ(word("-17\n"), -17);
    for (const char* strange : { "42\n", "0\n", "7\n", "-18\n" })
        EXPECT_EQ(word(strange), std::nullopt) << strange;
    EXPECT_EQ(word("8"), std::nullopt); // in the middle of being written
    EXPECT_EQ(word(""), std::nullopt);
    EXPECT_EQ(word("8 \n"), std::nullopt);
    EXPECT_EQ(word("a letter to my mother\n"), std::nullopt);
    EXPECT_EQ(completion_word(home.path("none")), std::nullopt);
    EXPECT_EQ(completion_word(home.path()), std::nullopt);
}

TEST(RunDirectory, AControllerLivesIfItIsThatOneProcessOfThisMachine)
{
    const long long self = ::getpid();
    RunRecord record { "", "", "/c", Tavro::GetHostname(), self, Tavro::process_mark(self), 0 };
    EXPECT_TRUE(controller_lives(record));
    record.mark += "1";
    EXPECT_FALSE(controller_lives(record));
    // The number has another owner, so what runs in its group is not the run's.
    EXPECT_TRUE(step_programs(record).empty());
    record.mark = Tavro::process_mark(self);
    record.host += "x";
    EXPECT_FALSE(controller_lives(record));
}

TEST(Ending, IsToldByTheLastWord)
{
    const TemporaryDirectory home;
    RunRecord record;
    record.completionFile = home.path("completion");
    const Progress seen { VRK::StepSolver, 3, 20, 0.0, 0.0, 0.0, 0, 0 };
    using Tavro::ChildEnd;
    const auto text
        = [&](const std::string& word, const ChildEnd& how = {}, const Progress& last = {}) {
              write_file(record.completionFile, word);
              const Ending ending = ending_of(record, how, last);
              return std::string(outcome_name(ending.outcome)) + " "
                  + std::to_string(exit_status_of(ending.outcome)) + ": " + ending_text(ending);
          };
    EXPECT_EQ(text("8\n"), "finished 0: finished");
    EXPECT_EQ(text("-8\n"), "stopped 3: stopped");
    EXPECT_EQ(text("-8\n", {}, seen), "stopped 3: stopped, at: solver, step 3 of 20");
    EXPECT_EQ(text("-6\n", {}, seen), "failed 1: failed: rotor program");
    EXPECT_EQ(text("-2\n"), "failed 1: failed: start of the update thread");
    EXPECT_EQ(text("-9\n"), "died 1: failed: the controller is gone without a word");
    EXPECT_EQ(text("-9\n", { ChildEnd::Kind::Signalled, 9 }, seen),
        "died 1: failed: the controller was killed by signal 9, at: solver, step 3 of 20");
    // The completion file could not be written; the link says it too.
    const Ending ending = ending_of({}, { ChildEnd::Kind::Exited, 0 }, seen, VRK::StepComplete);
    EXPECT_EQ(ending_text(ending), "finished");
    EXPECT_EQ(text("", { ChildEnd::Kind::Exited, 255 }),
        "died 1: failed: the controller ended with status 255, before it had read the case");
}

TEST(SignOfLife, IsMissedAfterFifteenSecondsOnceAndWelcomedBack)
{
    using News = SignOfLife::News;
    SignOfLife sign(1000);
    EXPECT_EQ(sign.look(1014, 0), News::None); // nothing yet, since the front end began to look
    EXPECT_EQ(sign.look(1015, 0), News::Silent);
    EXPECT_EQ(sign.look(1016, 0), News::None);
    EXPECT_EQ(sign.look(1017, 1017), News::Back);
    EXPECT_EQ(sign.look(1031, 1017), News::None);
    EXPECT_EQ(sign.look(1031, 5000), News::None); // of another clock
    EXPECT_EQ(sign.look(1032, 1017), News::Silent);
}

TEST(SignOfLife, IsMissedAtOnceWhereTheLastOneIsOldAlready)
{
    using News = SignOfLife::News;
    SignOfLife sign(1000);
    EXPECT_EQ(sign.look(1000, 900), News::Silent);
    EXPECT_EQ(sign.look(1001, 900), News::None);
    EXPECT_EQ(sign.look(1002, 1001), News::Back);
    SignOfLife young(1000);
    EXPECT_EQ(young.look(1000, 990), News::None);
    EXPECT_EQ(young.look(1004, 990), News::None);
    EXPECT_EQ(young.look(1005, 990), News::Silent);
}

TEST(LogEnds, AreTheLastTenLinesOfLogsThatSayAnything)
{
    const TemporaryDirectory home;
    write_file(home.path("empty.err"), "");
    write_file(home.path("short.out"), "one\r\ntw\x1b[2Jo\n\tthree");
    std::string lines;
    for (int line = 1; line <= 1000; ++line)
        lines += "line " + std::to_string(line) + "\n";
    write_file(home.path("long.out"), lines);
    write_file(home.path("wide.out"), std::string(5000, 'x') + "\nend\n");
    const auto ends = log_ends(
        home.path(), {}, { "none.err", "empty.err", "short.out", "long.out", "wide.out" });
    ASSERT_EQ(ends.size(), 3U);
    EXPECT_EQ(ends[0].file, "short.out");
    EXPECT_EQ(ends[0].lines, (std::vector<std::string> { "one", "tw?[2Jo", " three" }));
    ASSERT_EQ(ends[1].lines.size(), 10U);
    EXPECT_EQ(ends[1].lines.front(), "line 991");
    EXPECT_EQ(ends[1].lines.back(), "line 1000");
    EXPECT_EQ(ends[2].lines, std::vector<std::string> { "end" });
}

std::string restart_file(char step) { return std::string(28, '\0') + step + std::string(3, '\0'); }

TEST(LogEnds, ShowNothingThatWasThereBeforeTheRun)
{
    const TemporaryDirectory home;
    const auto time = [](int minutes) {
        return std::filesystem::file_time_type::clock::now() + std::chrono::minutes(minutes);
    };
    const auto write = [&](const std::string& name, const std::string& text, int minutes) {
        write_file(home.path(name), text);
        std::filesystem::last_write_time(home.path(name), time(minutes));
    };
    const std::vector<std::string> logs { "old.err", "same.err", "continued.err", "anew.err",
        "longer.err", "fresh.err" };
    for (const char* name : { "old.err", "same.err", "continued.err", "anew.err", "longer.err" })
        write(name, "before\n", -10);
    RunRecord record;
    record.since = static_cast<long long>(time(-5).time_since_epoch().count());
    record.logs = mark_logs(home.path(), logs);
    ASSERT_EQ(record.logs.size(), 5U);
    EXPECT_EQ(record.logs[0].size, 7U);
    write("same.err", "before\n", 0); // a program that says the same each time
    write("continued.err", "before\nnow\n", 0);
    write("anew.err", "now\n", 0);
    write("longer.err", "another text\n", 0);
    write("fresh.err", "now\n", 0);
    std::string shown;
    for (const auto& end : log_ends(home.path(), record, logs)) {
        shown += end.file + ":";
        for (const std::string& line : end.lines)
            shown += " " + line;
        shown += "\n";
    }
    EXPECT_EQ(shown,
        "same.err: before\ncontinued.err: now\nanew.err: now\nlonger.err: another text\n"
        "fresh.err: now\n");
}

TEST(RunRecord, FollowsItsDirectoryToAnotherPlace)
{
    const TemporaryDirectory home;
    RunRecord record;
    record.caseName = "a";
    record.host = "here";
    for (const char* name : { "then", "now" })
        Testing::make_directory(home.path(name));
    const std::string then = home.path("then");
    const std::string now = home.path("now");
    record.caseFile = then + "/case.toml";
    record.completionFile = then + "/.vortik-completion";
    for (const char* name : { "/case.toml", "/.vortik-completion" })
        write_file(now + name, "8\n");
    std::string reason;
    EXPECT_TRUE(remember_run(now, record, reason));
    EXPECT_EQ(recall_run(now)->caseFile, now + "/case.toml");
    EXPECT_EQ(recall_run(now)->completionFile, now + "/.vortik-completion");
    // What lay elsewhere, or has not come along, stays where it was.
    std::filesystem::remove(now + "/case.toml");
    record.completionFile = home.path("done.txt");
    EXPECT_TRUE(remember_run(now, record, reason));
    EXPECT_EQ(recall_run(now)->caseFile, then + "/case.toml");
    EXPECT_EQ(recall_run(now)->completionFile, home.path("done.txt"));
}

TEST(EarlierRun, LatestRestartIsTheYoungestThatFitsTheGrid)
{
    const TemporaryDirectory home;
    Testing::make_directory(home.path("Restarts"));
    const auto write = [&](const std::string& name, const std::string& bytes, int age) {
        const std::string file = home.path("Restarts/" + name);
        write_file(file, bytes);
        std::filesystem::last_write_time(
            file, std::filesystem::file_time_type::clock::now() - std::chrono::hours(age));
    };
    EXPECT_FALSE(latest_restart(home.path(), "a"));
    write("a.Rst", restart_file(7).substr(0, 31), 1); // cut: no whole step number
    EXPECT_FALSE(latest_restart(home.path(), "a"));
    write("a.old.Rst", restart_file(9), 0);
    write("b.Rst", restart_file(9), 0);
    write("a.Rst", restart_file(5), 2);
    EXPECT_EQ(latest_restart(home.path(), "a")->step, 5U);
    write("a.new.Rst", restart_file(4), 1);
    EXPECT_EQ(latest_restart(home.path(), "a")->step, 4U);
    EXPECT_EQ(latest_restart(home.path(), "a")->file, home.path("Restarts/a.new.Rst"));
    write("a.Rst", restart_file(6), 0);
    EXPECT_EQ(latest_restart(home.path(), "a")->step, 6U);
}

TEST(EarlierRun, APlaceThatIsGoneOrFullIsToldAsSuch)
{
    const TemporaryDirectory home;
    EXPECT_EQ(lack_of_place(home.path()), "");
    EXPECT_EQ(lack_of_place(home.path("none")), "The directory " + home.path("none") + " is gone.");
    const auto outcome = Testing::run_isolated([&] {
        if (Testing::mount_small_disk(home.path(), 512UL * 1024))
            std::cerr << lack_of_place(home.path());
    });
    if (outcome.err.empty())
        GTEST_SKIP() << "this process may mount nothing";
    EXPECT_EQ(outcome.err, "The file system of " + home.path() + " is full: it has 512 KiB left.");
}

TEST(EarlierRun, AnAdaptationIsCutOffWhileTheGridIsNewerThanItsRestartFile)
{
    const Testing::TemporaryDirectory home;
    for (const char* directory : { "Restarts", "Grid_Output" })
        Testing::make_directory(home.path(directory));
    const auto write = [&](const std::string& name, int minutesAgo) {
        Testing::write_file(home.path(name), std::string(40, '\1'));
        std::filesystem::last_write_time(home.path(name),
            std::filesystem::file_time_type::clock::now() - std::chrono::minutes(minutesAgo));
    };
    const auto cut_off = [&] { return is_adaptation_cut_off(home.path(), "a"); };
    EXPECT_FALSE(cut_off());
    write("Grid_Output/VRK.grid.dat", 9);
    write("Restarts/a.Rst", 8);
    EXPECT_FALSE(cut_off());
    write("Restarts/a.old.Rst", 7); // before the adaptation
    EXPECT_FALSE(cut_off());
    write("Grid_Output/VRK.grid.dat", 6);
    EXPECT_TRUE(cut_off());
    write("Restarts/a.new.Rst", 5); // fitted to the new grid
    EXPECT_FALSE(cut_off());
    write("Restarts/a.Rst", 4);
    EXPECT_FALSE(cut_off());
    // A grid of a run without adaptations may be newer than a file that somebody has put there.
    std::filesystem::remove(home.path("Restarts/a.old.Rst"));
    write("Grid_Output/VRK.grid.dat", 3);
    EXPECT_FALSE(cut_off());
}

/// What is said of a run whose solver failed after that many steps of 9.
std::string told_of_failure(const std::string& root, char step)
{
    RunRecord record;
    record.caseFile = root + "/case.toml";
    record.caseName = "a";
    record.since = std::numeric_limits<long long>::min();
    Ending ending { Outcome::Failed, VRK::StepSolverFailed, {}, {} };
    ending.last.step = VRK::StepSolver;
    ending.last.total = 9;
    if (std::filesystem::is_directory(root))
        write_file(root + "/Restarts/a.Rst", restart_file(step));
    const auto outcome = Testing::run_isolated([&] {
        Display display(false);
        tell_ending(root, record, ending, 1, display);
    });
    return outcome.out;
}

TEST(Ending, NamesAStepToGoOnFromOnlyIfThereIsAnotherOneAfterIt)
{
    const TemporaryDirectory home;
    const std::string root = home.path();
    Testing::make_directory(root + "/Restarts");
    EXPECT_EQ(told_of_failure(root, 8),
        "Failed: solver.\n`vortik run " + root + "/case.toml --restart` goes on from step 8.\n");
    EXPECT_EQ(told_of_failure(root, 9), "Failed: solver.\n");
}

TEST(Ending, OfARunWhoseDirectoryIsGoneSaysSo)
{
    const TemporaryDirectory home;
    const std::string root = home.path("none");
    EXPECT_EQ(told_of_failure(root, 8), "Failed: solver.\nThe directory " + root + " is gone.\n");
}

TEST(EarlierRun, MissesTheProgramsThatTheKindOfRunNeeds)
{
    const TemporaryDirectory home;
    const std::string here = home.path() + "/";
    using Names = std::vector<std::string>;
    VRK::ControllerInput input;
    EXPECT_EQ(missing_programs(here, input),
        (Names { "TreeGen", "Vortik_Extractor", "Vortik_PreCalc", "Vortik_Solver" }));
    input.m_vecRotors.resize(1);
    input.m_adapt.m_bAdaptive = true;
    input.m_shtParallelMode = 1;
    EXPECT_EQ(missing_programs(here, input),
        (Names { "TreeGen", "Vortik_Extractor-omp", "Vortik_RotorProg-omp", "Vortik_PreCalc-omp",
            "Vortik_Adapter-omp", "Vortik_Solver-omp" }));
    input.m_bGridOnly = true;
    EXPECT_EQ(missing_programs(here, input), Names { "TreeGen" });
    input.m_adapt.m_bAdaptive = false;
    input.m_bRestart = true;
    EXPECT_EQ(missing_programs(here, input), Names { "Vortik_Solver-omp" });
    const std::string program = Tavro::Platform::program_file(here + "Vortik_Solver-omp");
    write_file(program, ""); // no program as yet, where modes tell
    if (Testing::modes_close_files()) {
        EXPECT_EQ(missing_programs(here, input), Names { "Vortik_Solver-omp" });
    }
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    EXPECT_EQ(missing_programs(here, input), Names {});
}

} // namespace
