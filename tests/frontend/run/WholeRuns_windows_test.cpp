// SPDX-License-Identifier: Apache-2.0
#include "tests/frontend/Vortik.h"
#include "tests/support/PrivateObjects.h"
#include "tests/support/Waiting.h"
#include "tests/support/windows/ConsoleProcess.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>

#include <windows.h>

namespace Testing {

namespace {

/// Runs of the ROBIN example beside the stand-ins, started, watched and stopped by the front end's
/// commands.
class WholeRuns : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (const std::string why = use_private_objects(); !why.empty())
            GTEST_SKIP() << why << "; the tests do not run where a user's links could be";
        ASSERT_EQ(vortik({ "new", "rob", "--example", "robin" }).status, 0);
    }

    [[nodiscard]] Outcome vortik(const std::vector<std::string>& words) const
    {
        return run_vortik(m_directory.path(), words, "../demo/vortik");
    }
    [[nodiscard]] std::string completion() const
    {
        return read_file(m_directory.path("rob/.vortik-completion"));
    }
    [[nodiscard]] std::string root() const { return m_directory.path("rob"); }
    /// The run's directory as the system's own programs write it, in other letters.
    [[nodiscard]] std::string shouted_root() const
    {
        std::string path = root();
        for (char& c : path)
            c = c == '/' ? '\\' : (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
        return path;
    }

    TemporaryDirectory m_directory;
    EnvironmentScope m_pace { "VORTIK_STANDIN_PACE", "0" };
};

TEST_F(WholeRuns, RunEndsWithEightAndTellsItsResults)
{
    const Outcome run = vortik({ "run", "rob" });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(run.out.starts_with("Running robin in " + root() + " (controller: process "))
        << run.out;
    EXPECT_NE(run.out.find("\nFinished.\nResults in " + root() + ": Field_Solutions, "),
        std::string::npos)
        << run.out;
    EXPECT_EQ(completion(), "8\n");
    EXPECT_EQ(vortik({ "status", "rob" }).out, root() + ": finished\n");
    EXPECT_TRUE(file_exists(m_directory.path("rob/Restarts/robin.Rst")));

    // Another one cleans what this one has left, of which nothing is a stranger's.
    const Outcome again = vortik({ "run", "rob" });
    EXPECT_EQ(again.status, 0) << again.err;
    EXPECT_TRUE(again.out.starts_with("Cleaning the results of an earlier run in " + root() + ": "))
        << again.out;
    EXPECT_NE(again.out.find("\nFinished.\n"), std::string::npos) << again.out;
    EXPECT_EQ(completion(), "8\n");
    // A file that somebody has put there since is.
    write_file(m_directory.path("rob/Restarts/mine.txt"), "");
    std::filesystem::last_write_time(m_directory.path("rob/Restarts/mine.txt"),
        std::filesystem::file_time_type::clock::now() - std::chrono::hours(24));
    const Outcome refused = vortik({ "run", root() + "/case.toml" });
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.err.find("would remove them: Restarts/mine.txt."), std::string::npos)
        << refused.err;
}

TEST_F(WholeRuns, PathsAreTakenAsTheSystemWritesThem)
{
    ASSERT_EQ(root().substr(1, 2), ":/") << root();
    EXPECT_EQ(vortik({ "check", ".\\rob\\case.toml" }).status, 0);
    EXPECT_EQ(vortik({ "check", shouted_root() }).status, 0);
    EXPECT_EQ(vortik({ "build", ".\\rob", "-o", shouted_root() + "\\a.bin" }).status, 0);
    EXPECT_TRUE(file_exists(m_directory.path("rob/a.bin")));
    EXPECT_EQ(vortik({ "new", "un der\\neath", "--example", "robin" }).status, 0);
    EXPECT_TRUE(file_exists(m_directory.path("un der/neath/case.toml")));

    const EnvironmentScope pace("VORTIK_STANDIN_PACE", "10000");
    const Outcome begun = vortik({ "run", "un der\\neath\\case.toml", "--detach" });
    EXPECT_EQ(begun.status, 0) << begun.err;
    const std::string typed = '"' + m_directory.path("un der/neath") + '"';
    EXPECT_NE(begun.out.find("`vortik stop " + typed + "` stops it."), std::string::npos)
        << begun.out;
    const Outcome stopped = vortik({ "stop", "UN DER\\NEATH" });
    EXPECT_EQ(stopped.status, 0) << stopped.err;
    EXPECT_NE(stopped.out.find("Stopped"), std::string::npos) << stopped.out;
    EXPECT_EQ(read_file(m_directory.path("un der/neath/.vortik-completion")), "-8\n");
}

/// Starts a command of the front end whose standard output goes into a pipe. Gives its process.
HANDLE start_behind_pipe(const std::string& words, HANDLE output)
{
    STARTUPINFOA start {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = output;
    PROCESS_INFORMATION child {};
    std::string line = '"' + program_beside_this("../demo/vortik.exe") + "\" " + words;
    if (::CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, DETACHED_PROCESS, nullptr,
            nullptr, &start, &child)
        == 0)
        return nullptr;
    ::CloseHandle(child.hThread);
    return child.hProcess;
}

TEST_F(WholeRuns, OutputThatNobodyReadsLeavesTheRunToItself)
{
    const EnvironmentScope pace("VORTIK_STANDIN_PACE", "10000");
    SECURITY_ATTRIBUTES inheritable {};
    inheritable.nLength = sizeof inheritable;
    inheritable.bInheritHandle = TRUE;
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    ASSERT_NE(::CreatePipe(&read, &write, &inheritable, 0), 0);
    ::SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
    HANDLE run = start_behind_pipe("run \"" + root() + '"', write);
    ::CloseHandle(write);
    ASSERT_NE(run, nullptr);
    char first = 0;
    DWORD got = 0;
    EXPECT_NE(::ReadFile(read, &first, 1, &got, nullptr), 0);
    EXPECT_EQ(first, 'R'); // "Running"
    ::CloseHandle(read);
    EXPECT_EQ(::WaitForSingleObject(run, 60'000), WAIT_OBJECT_0);
    DWORD status = 0;
    ::GetExitCodeProcess(run, &status);
    ::CloseHandle(run);
    EXPECT_EQ(status, 3U);
    EXPECT_TRUE(vortik({ "status", "rob" }).out.starts_with(root() + ": running"));
    EXPECT_EQ(vortik({ "stop", "rob" }).status, 0);
}

const std::string kStopping
    = "Stopping, as soon as the controller hears it. Ctrl-C again leaves the run to itself.\n";

/// `vortik run` at a console, with its output in a file.
class RunAtAConsole {
public:
    explicit RunAtAConsole(const std::string& directory)
        : m_process(std::make_unique<ConsoleProcess>(
            "../demo/vortik", "run \"" + directory + '"', m_output))
    {
    }
    ~RunAtAConsole()
    {
        m_process.reset();
        // The console of a program may live a moment longer, and has the output open.
        (void)wait_until([this] {
            std::error_code held;
            return std::filesystem::remove(m_output, held) || !held;
        });
    }
    RunAtAConsole(const RunAtAConsole&) = delete;
    RunAtAConsole& operator=(const RunAtAConsole&) = delete;
    RunAtAConsole(RunAtAConsole&&) = delete;
    RunAtAConsole& operator=(RunAtAConsole&&) = delete;

    [[nodiscard]] std::string output() const { return text_of_stream(read_file(m_output)); }
    [[nodiscard]] bool writes(const std::string& text) const
    {
        return wait_until([&] { return output().find(text) != std::string::npos; });
    }
    [[nodiscard]] const ConsoleProcess& process() const { return *m_process; }

private:
    TemporaryDirectory m_directory;
    std::string m_output = m_directory.path("output");
    std::unique_ptr<ConsoleProcess> m_process;
};

TEST_F(WholeRuns, CtrlCStopsTheRun)
{
    const EnvironmentScope pace("VORTIK_STANDIN_PACE", "10000");
    const RunAtAConsole run(root());
    ASSERT_TRUE(run.writes("grid: octree")) << run.output();
    EXPECT_EQ(run.process().press("c"), 0U);
    EXPECT_EQ(run.process().status(), 3U);
    EXPECT_NE(run.output().find(kStopping), std::string::npos) << run.output();
    EXPECT_NE(run.output().find("Stopped, at: grid: octree"), std::string::npos) << run.output();
    EXPECT_EQ(completion(), "-8\n");
}

/// Suspends a process as long as it lives, so that it hears nothing.
class DeafProcess {
public:
    explicit DeafProcess(DWORD process)
        : m_process(::OpenProcess(PROCESS_SUSPEND_RESUME, FALSE, process))
        , m_deaf(call("NtSuspendProcess"))
    {
    }
    ~DeafProcess()
    {
        (void)call("NtResumeProcess"); // a failure shows in what it does not do
        ::CloseHandle(m_process);
    }
    DeafProcess(const DeafProcess&) = delete;
    DeafProcess& operator=(const DeafProcess&) = delete;
    DeafProcess(DeafProcess&&) = delete;
    DeafProcess& operator=(DeafProcess&&) = delete;

    [[nodiscard]] bool is_deaf() const { return m_deaf; }

private:
    /// A call of the system that no header declares.
    [[nodiscard]] bool call(const char* name) const
    {
        using Call = LONG(__stdcall*)(HANDLE);
        const auto function = reinterpret_cast<Call>(
            reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("ntdll"), name)));
        return function != nullptr && function(m_process) == 0;
    }

    HANDLE m_process;
    bool m_deaf;
};

TEST_F(WholeRuns, SecondCtrlCLeavesTheRunToItself)
{
    const EnvironmentScope pace("VORTIK_STANDIN_PACE", "10000");
    {
        const RunAtAConsole run(root());
        ASSERT_TRUE(run.writes("grid: octree")) << run.output();
        const std::string words = "(controller: process ";
        const std::string output = run.output();
        const auto number = std::stoul(output.substr(output.find(words) + words.size()));
        const DeafProcess controller(static_cast<DWORD>(number)); // both keys come before it stops
        ASSERT_TRUE(controller.is_deaf());
        EXPECT_EQ(run.process().press("c"), 0U);
        EXPECT_TRUE(run.writes(kStopping)) << run.output();
        EXPECT_EQ(run.process().press("c"), 0U);
        EXPECT_EQ(run.process().status(), 3U);
        EXPECT_NE(run.output().find("The run goes on by itself."), std::string::npos)
            << run.output();
        EXPECT_EQ(completion(), "-9\n");
    }
    // It has been asked to stop all the same.
    EXPECT_TRUE(wait_until([&] { return completion() == "-8\n"; })) << completion();
    EXPECT_EQ(vortik({ "status", "rob" }).out, root() + ": stopped\n");
}

TEST_F(WholeRuns, DetachedRunIsSeenAndStoppedByOtherCommands)
{
    const EnvironmentScope pace("VORTIK_STANDIN_PACE", "10000");
    const Outcome begun = vortik({ "run", "rob", "--detach" });
    EXPECT_EQ(begun.status, 0);
    EXPECT_NE(begun.out.find("The run goes on by itself."), std::string::npos) << begun.out;
    EXPECT_TRUE(vortik({ "status", "rob" }).out.starts_with(root() + ": running"));
    EXPECT_NE(vortik({ "links" }).out.find(root() + "/"), std::string::npos);
    EXPECT_EQ(vortik({ "run", "rob" }).status, 2); // one at a time
    const Outcome stopped = vortik({ "stop", "rob" });
    EXPECT_EQ(stopped.status, 0);
    EXPECT_NE(stopped.out.find("Stopped"), std::string::npos) << stopped.out;
    EXPECT_EQ(completion(), "-8\n");
    EXPECT_EQ(vortik({ "status", "rob" }).out, root() + ": stopped\n");
}

TEST_F(WholeRuns, FailedStepEndsTheRunWithTheEndOfItsLog)
{
    const EnvironmentScope fault("VORTIK_STANDIN_FAULT", "Vortik_PreCalc:fail");
    const Outcome run = vortik({ "run", "rob" });
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.out.find("Failed: pre-calculation.\n"
                           "The end of Process_Output/Vortik_PreCalc.err:\n"
                           "  failed on demand\n"),
        std::string::npos)
        << run.out;
    EXPECT_EQ(completion(), "-5\n");
}

TEST_F(WholeRuns, ProgramsThatAreMissingAreNamedBeforeAnythingIsDone)
{
    const Outcome run = run_vortik(m_directory.path(), { "run", "rob" });
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("there are no TreeGen, Vortik_Extractor, "), std::string::npos)
        << run.err;
    EXPECT_FALSE(file_exists(m_directory.path("rob/.vortik-completion")));
}

} // namespace

} // namespace Testing
