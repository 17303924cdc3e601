// SPDX-License-Identifier: Apache-2.0
// Runs that are under way in a directory, whoever has begun them.
#include "links/GUIConLink.h"
#include "tests/frontend/run/RunTest.h"
#include "tests/support/Isolated.h"
#include "tests/support/Waiting.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <memory>
#include <regex>
#include <stdexcept>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using Tavro::LinkManager;
using Testing::all_of;
using Testing::tidy;
using Testing::VortikProcess;

class LiveRun : public Testing::RunTest {
protected:
    /// What `talk(link, said)` collects beside a link to the run, in a process of its own: a front
    /// end that is not ours.
    template <typename Talk>
    static std::string said_beside_link(const std::string& root, const Talk& talk)
    {
        const auto outcome = Testing::run_isolated([&] {
            if (LinkManager::Startup() != LinkManager::Success)
                ::_exit(1);
            std::string said;
            {
                LinkManager::Result result {};
                VRK::GUIConLink link(Tavro::FilePath(root + "/"), result);
                talk(link, said);
            }
            LinkManager::Shutdown();
            std::cerr << said;
        });
        return outcome.err;
    }
    /// Begins a long run and leaves it to itself. Gives what is remembered of it.
    static std::string begin(const std::string& root)
    {
        VortikProcess run({ "run", root, "--detach" }, pace(10));
        EXPECT_EQ(run.ends(), 0) << run.output();
        return Testing::read_file(root + "/.vortik-run");
    }
    /// Whether the command, asked again and again, comes to say that.
    static bool comes_to_say(const Testing::Words& command, const std::string& text)
    {
        return Testing::wait_until([&] { return all_of(command).find(text) != std::string::npos; });
    }
};

TEST_F(LiveRun, OfAnotherFrontEndIsSeenByItsLinkAndWatchedAndStoppedByIt)
{
    const std::string root = make_case("foreign", 100'000);
    const std::string record = begin(root);
    // Another front end leaves no record.
    std::filesystem::remove(root + "/.vortik-run");
    const std::string refusal
        = "vortik: a run that another front end has begun is under way in DIR (link N); `vortik "
          "watch DIR` shows it, `vortik stop DIR` stops it\nstatus 2\n";
    EXPECT_EQ(tidy(all_of({ "run", root }), root), refusal);
    EXPECT_EQ(tidy(all_of({ "run", root, "--force" }), root), refusal);
    EXPECT_TRUE(comes_to_say({ "status", root }, root + ": running, solver"));
    static const std::regex status("DIR: running, solver.* \\(begun by another front end\\)\n");
    EXPECT_TRUE(std::regex_search(tidy(all_of({ "status" }), root), status));

    VortikProcess watch({ "watch", root });
    EXPECT_TRUE(watch.writes("solver"));
    VortikProcess stop({ "stop", root });
    EXPECT_EQ(stop.ends(), 0) << stop.output();
    EXPECT_EQ(watch.ends(), 3) << watch.output();
    EXPECT_NE(watch.output().find("\nStopped, at: solver"), std::string::npos) << watch.output();
    EXPECT_EQ(tidy(all_of({ "status", root }), root),
        "vortik: no run is known in DIR; `vortik run` starts one\nstatus 2\n");
    Testing::write_file(root + "/.vortik-run", record); // for whoever clears up
}

TEST_F(LiveRun, IsKnownThoughVortikWasKilledBeforeItKnewTheController)
{
    const std::string root = make_case("early", 100'000);
    const std::string record = begin(root);
    static const std::regex process("controller [0-9]+\nmark .*\n");
    Testing::write_file(
        root + "/.vortik-run", std::regex_replace(record, process, "controller -1\nmark \n"));
    EXPECT_TRUE(comes_to_say({ "status", root }, root + ": running, solver"));
    VortikProcess stop({ "stop", root });
    EXPECT_EQ(stop.ends(), 0) << stop.output();
    EXPECT_EQ(tidy(all_of({ "status", root }), root), "DIR: stopped\nstatus 3\n");
    // All that the solver has left while it was stopping is known to be the run's.
    (void)begin(root);
    EXPECT_EQ(all_of({ "stop", root }).substr(0, 9), "Stopping ");
}

TEST_F(LiveRun, ThatIsLeftByStopGoesOnStoppingAndItsDeathIsTheFailureOfStop)
{
    const std::string root = make_case("deaf", 100'000);
    (void)begin(root); // the record stays where it is
    const pid_t controller = controller_of(root);
    EXPECT_EQ(tidy(all_of({ "run", root }), root),
        "vortik: a run is under way in DIR (controller: process N); `vortik watch DIR` shows it, "
        "`vortik stop DIR` stops it\nstatus 2\n");
    ASSERT_EQ(::kill(controller, SIGSTOP), 0);
    VortikProcess stop({ "stop", root });
    EXPECT_TRUE(stop.writes("Stopping "));
    ASSERT_EQ(::kill(stop.pid(), SIGTERM), 0);
    EXPECT_EQ(stop.ends(), 3);
    VortikProcess again({ "stop", root });
    EXPECT_TRUE(again.writes("Stopping "));
    ASSERT_EQ(::kill(controller, SIGKILL), 0);
    EXPECT_EQ(again.ends(), 1);
    EXPECT_NE(
        again.output().find("\nFailed: the controller is gone without a word"), std::string::npos)
        << again.output();
}

/// A front end that is not ours, in a process of its own, and what `vortik` says beside it.
TEST_F(LiveRun, IsTheMeaningOfALinkWhoseStampsAreNew)
{
    const std::string root = make_case("linked", 20);
    const std::string remembered = "vortik run 1\ncase " + root
        + "/case.toml\nname cube\ncompletion " + root + "/.vortik-completion\nhost ";
    const auto talk = [&](VRK::GUIConLink& link, std::string& said) {
        const auto say
            = [&](const Testing::Words& command) { said += tidy(all_of(command), root); };
        say({ "run", root });
        say({ "watch", root });
        say({ "status", root });
        (void)link.SetStep(VRK::StepExtractor);
        (void)link.Touch();
        say({ "run", root, "--force" });
        say({ "status", root });
        // The same number as that of a run of ours that is dead: who touches it?
        Testing::write_file(root + "/.vortik-completion", "-9\n");
        char host[256] = {};
        ::gethostname(host, sizeof host - 1);
        Testing::write_file(root + "/.vortik-run",
            remembered + host + "\ncontroller 1\nmark 1@none\nlink "
                + std::to_string(link.GetLinkID()) + "\n");
        std::atomic<bool> touching = true;
        std::thread controller([&] {
            while (touching) {
                (void)link.Touch();
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            }
        });
        say({ "status", root });
        touching = false;
        controller.join();
        say({ "status", root });
        (void)link.SetStep(VRK::StepComplete); // it is over, though its front end lives
        say({ "status", root });
    };
    EXPECT_EQ(said_beside_link(root, talk),
        "vortik: a front end has a link for DIR (link N), and no controller is to be seen on it. "
        "Of one that was killed it is gone after half a minute; --force begins a run all the "
        "same\nstatus 2\n"
        "vortik: no run is known in DIR; `vortik run` starts one\nstatus 2\n"
        "DIR: has a link of another front end, and no controller is to be seen on it\nstatus 0\n"
        "vortik: a run that another front end has begun is under way in DIR (link N); `vortik "
        "watch DIR` shows it, `vortik stop DIR` stops it\nstatus 2\n"
        "DIR: running, extractor (begun by another front end)\nstatus 0\n"
        "DIR: running, extractor (begun by another front end)\nstatus 0\n"
        "DIR: failed: the controller is gone without a word\nstatus 1\n"
        "DIR: failed: the controller is gone without a word\nstatus 1\n");
}

/// The controller has said that it is done and has yet to write that down.
TEST_F(LiveRun, IsUnderWayToItsLastWordThoughVortikWasKilledBeforeItKnewTheController)
{
    const std::string root = make_case("ending", 20);
    char host[256] = {};
    ::gethostname(host, sizeof host - 1);
    const std::string remembered = "vortik run 1\ncase " + root
        + "/case.toml\nname cube\ncompletion " + root + "/.vortik-completion\nhost " + host
        + "\ncontroller -1\nmark \nlink ";
    const auto talk = [&](VRK::GUIConLink& link, std::string& said) {
        const auto say
            = [&](const Testing::Words& command) { said += tidy(all_of(command), root); };
        Testing::write_file(
            root + "/.vortik-run", remembered + std::to_string(link.GetLinkID()) + "\n");
        Testing::write_file(root + "/.vortik-completion", "-9\n");
        (void)link.SetStep(VRK::StepExtractor);
        (void)link.Touch();
        VortikProcess watch({ "watch", root });
        if (!watch.writes("extractor"))
            std::cerr << "nothing of the extractor: ";
        (void)link.SetStep(VRK::StepComplete);
        say({ "status", root });
        say({ "run", root, "--force" });
        Testing::write_file(root + "/.vortik-completion", "8\n");
        say({ "status", root });
        const int status = watch.ends();
        said += tidy(watch.output(), root) + "status " + std::to_string(status) + '\n';
        // A controller that has died there is not waited for.
        Testing::write_file(root + "/.vortik-completion", "-9\n");
        VRK::GUIRecord record {};
        record.step = VRK::StepComplete;
        record.tLastTouch = ::time(nullptr) - 40;
        (void)LinkManager::SetLinkData(
            link.GetLinkID(), sizeof record, reinterpret_cast<const char*>(&record));
        say({ "status", root });
    };
    EXPECT_EQ(said_beside_link(root, talk),
        "DIR: running, end\nstatus 0\n"
        "vortik: a run is under way in DIR (link N); `vortik watch DIR` shows it, `vortik stop "
        "DIR` stops it\nstatus 2\n"
        "DIR: finished\nstatus 0\n"
        "extractor\nFinished.\nstatus 0\n"
        "DIR: failed: the controller is gone without a word\nstatus 1\n");
}

TEST_F(LiveRun, WhoseControllerIsSilentIsToldAtOnceAndWhenItIsBack)
{
    const std::string root = make_case("silent", 20);
    // Another front end may have come to the directory by another way.
    const std::string alias = m_directory.path("alias");
    Testing::make_link(root, alias);
    const auto outcome = Testing::run_isolated([&] {
        if (LinkManager::Startup() != LinkManager::Success)
            ::_exit(1);
        LinkManager::Result result {};
        {
            VRK::GUIConLink link(Tavro::FilePath(alias + "/"), result);
            VRK::GUIRecord record {};
            record.step = VRK::StepExtractor;
            record.tLastTouch = ::time(nullptr) - 20;
            (void)LinkManager::SetLinkData(
                link.GetLinkID(), sizeof record, reinterpret_cast<const char*>(&record));
            VortikProcess watch({ "watch", root });
            if (!watch.writes("The controller has not touched its link for 15 s"))
                std::cerr << "nothing of the silence: ";
            (void)link.Touch();
            if (!watch.writes("The controller touches its link again.\n"))
                std::cerr << "nothing of the return: ";
            (void)link.SetStep(VRK::StepComplete);
            std::cerr << "status " << watch.ends() << '\n' << tidy(watch.output(), root);
        }
        LinkManager::Shutdown();
    });
    EXPECT_EQ(outcome.err,
        "status 0\nextractor\nThe controller has not touched its link for 15 s: it is suspended, "
        "or the machine has no time for it.\nThe controller touches its link again.\nFinished.\n");
}

/// Processes that each hold a share in the links, until this one's end.
class Crowd {
public:
    explicit Crowd(int count)
    {
        for (; count > 0; --count) {
            int ready[2] {};
            if (::pipe(ready) != 0)
                throw std::runtime_error("pipe");
            m_processes.push_back(::fork());
            if (m_processes.back() == 0) {
                if (LinkManager::Startup() == LinkManager::Success)
                    (void)!::write(ready[1], "y", 1);
                ::pause();
                ::_exit(0);
            }
            ::close(ready[1]);
            char answer = 0;
            if (::read(ready[0], &answer, 1) != 1)
                throw std::runtime_error("no share in the links");
            ::close(ready[0]);
        }
    }
    ~Crowd()
    {
        for (const pid_t process : m_processes) {
            ::kill(process, SIGKILL);
            ::waitpid(process, nullptr, 0);
        }
    }
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;
    Crowd(Crowd&&) = delete;
    Crowd& operator=(Crowd&&) = delete;

private:
    std::vector<pid_t> m_processes;
};

TEST_F(LiveRun, FindsThatTheLinksAreFullBeforeAnythingIsCleanedOrChanged)
{
    const std::string root = make_case("run", 20);
    Testing::write_file(root + "/.vortik-completion", "8\n");
    char host[256] = {};
    ::gethostname(host, sizeof host - 1);
    Testing::write_file(root + "/.vortik-run",
        "vortik run 1\ncase " + root + "/case.toml\nname cube\ncompletion " + root
            + "/.vortik-completion\nhost " + host + "\ncontroller 1\nmark 1@none\nlink 0\n");
    const auto files = Testing::names_in(root);
    // A run is a controller, a step program and who watches it; 24 times two and the vortik that
    // would begin another one leave one place of 50.
    const auto nearly = Testing::run_isolated([&] {
        if (LinkManager::Startup() != LinkManager::Success)
            ::_exit(1);
        LinkManager::Result result {};
        std::vector<std::unique_ptr<VRK::GUIConLink>> runs;
        for (int i = 0; i < 24; ++i)
            runs.push_back(std::make_unique<VRK::GUIConLink>(
                Tavro::FilePath(root + std::to_string(i) + "/"), result));
        std::cerr << tidy(all_of({ "run", root }), root);
        runs.clear();
        LinkManager::Shutdown();
    });
    EXPECT_EQ(nearly.err,
        "vortik: the links have no room for another run beside the 24 that are under way; `vortik "
        "status` lists them\nstatus 1\n");

    std::string said;
    {
        const Crowd crowd(50);
        for (const auto& command : std::vector<Testing::Words> {
                 { "run", root }, { "links" }, { "status" }, { "status", root } })
            said += tidy(all_of(command), root);
    }
    const std::string full
        = "vortik: no links: Too many managers. They have room for 50 programs: two of each run, "
          "and each vortik that shows one; it is there again as soon as one of them ends\n";
    EXPECT_EQ(said,
        full + "status 1\n" + full + "status 1\n" + full + "status 1\n" + full
            + "DIR: finished\nstatus 0\n");
    EXPECT_EQ(Testing::names_in(root), files);
}

} // namespace
