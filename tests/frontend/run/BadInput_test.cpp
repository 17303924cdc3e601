// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/platform/Claim.h"
#include "tests/frontend/run/RunTest.h"
#include "tests/support/Programs.h"

#include <filesystem>

namespace {

using Testing::all_of;
using Testing::names_in;
using Testing::tidy;
using Testing::VortikProcess;

using Names = std::vector<std::string>;

class BadRun : public Testing::RunTest { };

TEST_F(BadRun, WithoutACaseOrARunChangesNothing)
{
    const std::string root = make_case("empty", 20);
    EXPECT_EQ(tidy(all_of({ "watch", root }), root),
        "vortik: no run is known in DIR; `vortik run` starts one\nstatus 2\n");
    EXPECT_EQ(tidy(all_of({ "stop", root }), root),
        "vortik: no run is known in DIR; `vortik run` starts one\nstatus 2\n");
    EXPECT_EQ(tidy(all_of({ "status", root }), root),
        "vortik: no run is known in DIR; `vortik run` starts one\nstatus 2\n");
    EXPECT_EQ(tidy(all_of({ "status", root + "/none" }), root),
        "vortik: DIR/none: no such directory\nstatus 2\n");
    EXPECT_EQ(tidy(all_of({ "run", root, "--restart" }), root),
        "vortik: there is no restart file of this case in DIR/Restarts; without --restart a new "
        "run begins\nstatus 2\n");
    const std::string missing = all_of({ "run", root + "/none.toml" });
    EXPECT_TRUE(missing.ends_with("status 2\n")) << missing;
    EXPECT_EQ(names_in(root), (Names { "case.toml", "cube.obj" }));
}

TEST_F(BadRun, DoesNotReplaceAStrangersFilesUnasked)
{
    const std::string root = make_case("taken", 20);
    Testing::write_file(root + "/.vortik-completion", "a letter to my mother\n");
    EXPECT_EQ(tidy(all_of({ "run", root }), root),
        "vortik: DIR/.vortik-completion is in the place of the completion file and is none; "
        "--force replaces it\nstatus 2\n");
    Testing::write_file(root + "/.vortik-completion", "-9\n");
    Testing::write_file(root + "/.vortik-case", "");
    EXPECT_EQ(tidy(all_of({ "run", root }), root),
        "vortik: DIR/.vortik-case is in the place of the controller's case file; --force replaces "
        "it\nstatus 2\n");
    Testing::write_file(root + "/.vortik-run",
        "vortik run 1\ncase DIR/case.toml\nname cube\ncompletion " + root
            + "/.vortik-completion\nhost another.machine\ncontroller 1\nmark 1@1\nlink 0\n");
    EXPECT_EQ(tidy(all_of({ "run", root }), root),
        "vortik: a run in DIR was begun on another.machine and has not ended, as far as can be "
        "seen from here; --force begins another\nstatus 2\n");
    EXPECT_EQ(tidy(all_of({ "watch", root }), root),
        "vortik: the run in DIR was begun on another.machine and can be seen from there alone\n"
        "status 2\n");
    EXPECT_EQ(tidy(all_of({ "status", root }), root),
        "DIR: begun on another.machine; from here it cannot be seen whether it runs\nstatus 0\n");
}

TEST_F(BadRun, BesideAnotherThatIsJustBeginningIsRefused)
{
    const std::string root = make_case("claimed", 20);
    const Tavro::Platform::Claim claim(root);
    EXPECT_TRUE(claim.granted());
    EXPECT_EQ(tidy(all_of({ "run", root }), root),
        "vortik: another run is just beginning in DIR; `vortik watch DIR` will show it\nstatus "
        "2\n");
}

TEST_F(BadRun, WithoutStepProgramsBesideTheFrontEndIsRefused)
{
    const std::string root = make_case("alone", 20);
    VortikProcess::Setting setting = pace(0);
    setting.directory = Testing::program_beside_this("");
    setting.directory.pop_back();
    VortikProcess run({ "run", root }, setting);
    EXPECT_EQ(run.ends(), 1);
    EXPECT_EQ(tidy(run.output(), setting.directory),
        "vortik: there are no TreeGen, Vortik_Extractor, Vortik_PreCalc, Vortik_Solver in DIR/. "
        "Step programs are products of their own; the controller looks for them beside vortik. Put "
        "them there, or links to them\n");
    EXPECT_EQ(names_in(root), (Names { "case.toml", "cube.obj" }));
}

TEST_F(BadRun, ThatCannotBeRememberedDoesNotBegin)
{
    const std::string root = make_case("unwritable", 20);
    Testing::make_directory(root + "/.vortik-run");
    Testing::make_directory(root + "/Restarts");
    Testing::write_file(root + "/Restarts/a.Rst", "mine");
    // Nothing is said of a cleaning that does not come.
    EXPECT_EQ(tidy(all_of({ "run", root, "--force" }), root),
        "vortik: what is to be remembered of the run cannot be written in DIR: Is a directory\n"
        "status 1\n");
    EXPECT_EQ(names_in(root), (Names { ".vortik-run", "Restarts", "case.toml", "cube.obj" }));
    EXPECT_EQ(Testing::read_file(root + "/Restarts/a.Rst"), "mine");
}

TEST_F(BadRun, ThatWouldReplaceAnInputIsRefusedAlsoWithForce)
{
    const std::string root = make_case("input", 20);
    std::string text = Testing::read_file(root + "/case.toml");
    const std::string body = Testing::read_file(root + "/cube.obj");
    text.replace(text.find("[case]"), 6, "[case]\ncompletion_file = \"cube.obj\"");
    Testing::write_file(root + "/case.toml", text);
    EXPECT_TRUE(tidy(all_of({ "run", root, "--force" }), root)
                    .ends_with("vortik: the run would replace DIR/cube.obj, from which the case is "
                               "made; name another file in the case\nstatus 2\n"));
    EXPECT_EQ(Testing::read_file(root + "/cube.obj"), body);
    EXPECT_EQ(names_in(root), (Names { "case.toml", "cube.obj" }));
}

TEST_F(BadRun, WhoseCaseFileCannotBeWrittenDoesNotBegin)
{
    const std::string root = make_case("in the way", 20);
    Testing::make_directory(root + "/.vortik-case");
    Testing::make_directory(root + "/Restarts");
    Testing::write_file(root + "/Restarts/a.Rst", "mine");
    EXPECT_EQ(tidy(all_of({ "run", root, "--force" }), root),
        "vortik: the case file DIR/.vortik-case cannot be written: Is a directory\nstatus 1\n");
    EXPECT_EQ(names_in(root), (Names { ".vortik-case", "Restarts", "case.toml", "cube.obj" }));
}

TEST_F(BadRun, WhoseControllerCannotBeStartedLeavesWhatIsKnownOfTheLastOne)
{
    const std::string root = make_case("no controller", 20);
    VortikProcess::Setting setting = pace(0);
    setting.directory = root + "/programs";
    Testing::make_directory(setting.directory);
    for (const std::string& name : names_in(Testing::demo_directory()))
        Testing::make_link(Testing::demo_directory() + "/" + name, setting.directory + "/" + name);
    std::filesystem::remove(setting.directory + "/Vortik_Controller");
    VortikProcess without({ "run", root }, setting);
    EXPECT_EQ(without.ends(), 1);
    EXPECT_EQ(tidy(without.output(), root),
        "vortik: there is no Vortik_Controller in DIR/programs/, the directory of vortik, where it "
        "is looked for\n");

    Testing::write_file(setting.directory + "/Vortik_Controller", "no program at all");
    std::filesystem::permissions(
        setting.directory + "/Vortik_Controller", std::filesystem::perms::owner_all);
    const std::string record = "vortik run 1\ncase " + root + "/case.toml\nname cube\ncompletion "
        + root + "/.vortik-completion\nhost h\ncontroller 1\nmark 1@1\nlink 0\n";
    Testing::write_file(root + "/.vortik-run", record);
    Testing::write_file(root + "/.vortik-completion", "-8\n");
    VortikProcess run({ "run", root }, setting);
    EXPECT_EQ(run.ends(), 1);
    EXPECT_EQ(tidy(run.output(), root),
        "vortik: DIR/programs/Vortik_Controller cannot be started: Exec format error; nothing has "
        "been changed\n");
    EXPECT_EQ(Testing::read_file(root + "/.vortik-run"), record);
    EXPECT_EQ(Testing::read_file(root + "/.vortik-completion"), "-8\n");
    EXPECT_FALSE(Testing::file_exists(root + "/.vortik-case"));
}

} // namespace
