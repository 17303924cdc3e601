// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FilePath.h"
#include "tavrobase/FileUtilities.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>

using Tavro::FilePath;
using namespace Testing;

TEST(CreateDirectory, MakesOneLevelAndGivesZero)
{
    const TemporaryDirectory root;
    EXPECT_EQ(Tavro::createDirectory(FilePath(root.path("new")), 0755), 0);
    EXPECT_TRUE(FilePath(root.path("new")).IsDirectory());
}

TEST(CreateDirectory, AnExistingOneIsAReportedFailure)
{
    const TemporaryDirectory root;
    make_directory(root.path("there"));
    write_file(root.path("file"), "kept");
    const Outcome outcome = run_at_debug_level(1, [&] {
        std::cout << (Tavro::createDirectory(FilePath(root.path("there")), 0755) != 0)
                  << (Tavro::createDirectory(FilePath(root.path("file")), 0755) != 0);
    });
    EXPECT_EQ(outcome.out, "11");
    EXPECT_EQ(outcome.err,
        "Unable to create directory: File exists\n"
        "Unable to create directory: File exists\n");
    EXPECT_EQ(read_file(root.path("file")), "kept");
}

TEST(CreateDirectory, AMissingParentIsAReportedFailure)
{
    const TemporaryDirectory root;
    const Outcome outcome = run_at_debug_level(1, [&] {
        std::cout << (Tavro::createDirectory(FilePath(root.path("a/b")), 0755) != 0)
                  << (Tavro::createDirectory(FilePath(), 0755) != 0);
    });
    EXPECT_EQ(outcome.out, "11");
    EXPECT_EQ(outcome.err,
        "Unable to create directory: No such file or directory\n"
        "Unable to create directory: No such file or directory\n");
    EXPECT_FALSE(file_exists(root.path("a")));
}

TEST(CreateDirectory, AReadOnlyParentIsAFailure)
{
    const TemporaryDirectory root;
    set_mode(root.path(), 0555);
    const Outcome outcome = run_as_ordinary_user(
        [&] { std::cout << (Tavro::createDirectory(FilePath(root.path("new")), 0755) != 0); });
    set_mode(root.path(), 0755);
    EXPECT_EQ(outcome.out, "1");
    EXPECT_EQ(outcome.err, "");
}

TEST(CreateDirectory, TakesAnyName)
{
    const TemporaryDirectory root;
    for (const std::string& name : awkward_names()) {
        FilePath path; // unnormalised: the subject is what goes to the system
        path.Append(root.path(name));
        EXPECT_EQ(Tavro::createDirectory(path, 0755), 0) << name;
        EXPECT_TRUE(std::filesystem::is_directory(root.path(name))) << name;
    }
}

TEST(CreateDirectory, IsTraced)
{
    const TemporaryDirectory root;
    const Outcome outcome
        = run_at_debug_level(5, [&] { (void)Tavro::createDirectory(FilePath(root.path()), 0755); });
    EXPECT_EQ(outcome.err,
        "Entering createDirectory\n"
        "Unable to create directory: File exists\n"
        "Leaving createDirectory\n");
}

TEST(GetCurrentDirectory, IsTheWorkingDirectoryWithASlash)
{
    const TemporaryDirectory root;
    const WorkingDirectoryScope inside(root.path());
    EXPECT_EQ(Tavro::getCurrentDirectory().Get(), std::filesystem::current_path().string() + "/");
}

TEST(GetCurrentDirectory, OfTheRootIsOneSlash)
{
    const WorkingDirectoryScope inside("/");
    EXPECT_EQ(Tavro::getCurrentDirectory().Get(), "/");
}

TEST(GetCurrentDirectory, ADirectoryThatIsGoneGivesAnEmptyPath)
{
    const TemporaryDirectory root;
    const Outcome outcome = run_isolated([&] {
        make_directory(root.path("gone"));
        std::filesystem::current_path(root.path("gone"));
        std::filesystem::remove(root.path("gone"));
        std::cout << '[' << Tavro::getCurrentDirectory() << ']'
                  << Tavro::getCurrentDirectory().Initialized() << '['
                  << Tavro::GetWorkingDirectory() << ']';
    });
    EXPECT_EQ(outcome.out, "[]0[]");
}

TEST(SetWorkingDirectory, ChangesTheDirectory)
{
    const TemporaryDirectory root;
    make_directory(root.path("two words"));
    const Outcome outcome = run_isolated([&] {
        std::cout << Tavro::SetWorkingDirectory(FilePath(root.path("two words")))
                  << std::filesystem::current_path().filename().string();
    });
    EXPECT_EQ(outcome.out, "1two words");
}

TEST(SetWorkingDirectory, AFailureIsFalseWithoutAnyReport)
{
    const TemporaryDirectory root;
    write_file(root.path("file"), "");
    const Outcome outcome = run_at_debug_level(5, [&] {
        const auto before = std::filesystem::current_path();
        std::cout << Tavro::SetWorkingDirectory(FilePath(root.path("gone")))
                  << Tavro::SetWorkingDirectory(FilePath(root.path("file")))
                  << Tavro::SetWorkingDirectory(FilePath())
                  << (before == std::filesystem::current_path());
    });
    EXPECT_EQ(outcome.out, "0001");
    EXPECT_EQ(outcome.err, ""); // no trace lines either
}

TEST(SetCurrentDirectoryA, ChangesTheDirectory)
{
    const TemporaryDirectory root;
    make_directory(root.path("in"));
    const Outcome outcome = run_isolated([&] {
        std::cout << Tavro::SetCurrentDirectoryA(FilePath(root.path("in")))
                  << std::filesystem::current_path().filename().string();
    });
    EXPECT_EQ(outcome.out, "1in");
}

TEST(SetCurrentDirectoryA, AFailureIsReported)
{
    const TemporaryDirectory root;
    const Outcome outcome = run_at_debug_level(
        1, [&] { std::cout << Tavro::SetCurrentDirectoryA(FilePath(root.path("gone"))); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err, "Unable to change to directory: No such file or directory\n");
}

TEST(SetCurrentDirectoryA, AClosedDirectoryIsReported)
{
    const TemporaryDirectory root;
    set_mode(root.path(), 0755);
    make_directory(root.path("closed"));
    set_mode(root.path("closed"), 0);
    const Outcome outcome = run_at_debug_level(1, [&] {
        const Outcome inner = run_as_ordinary_user(
            [&] { std::cout << Tavro::SetCurrentDirectoryA(FilePath(root.path("closed"))); });
        std::cout << inner.out;
        std::cerr << inner.err;
    });
    set_mode(root.path("closed"), 0755);
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err, "Unable to change to directory: Permission denied\n");
}

TEST(SetCurrentDirectoryA, IsTracedWithoutTheLastLetter)
{
    const Outcome outcome
        = run_at_debug_level(5, [] { (void)Tavro::SetCurrentDirectoryA(FilePath("./")); });
    EXPECT_EQ(outcome.err, "Entering SetCurrentDirectory\nLeaving SetCurrentDirectory\n");
}

// The climb ends where a path is its own directory, and the directory of "/" is "./".
TEST(GetWorkingDirectory, ClimbsToTheTopOfTheChain)
{
    const TemporaryDirectory root;
    const Outcome outcome = run_at_debug_level(5, [&] {
        std::filesystem::current_path(root.path());
        std::cout << Tavro::GetWorkingDirectory();
        std::filesystem::current_path("/");
        std::cout << '|' << Tavro::GetWorkingDirectory();
    });
    EXPECT_EQ(outcome.out, "./|./");
    EXPECT_EQ(outcome.err, ""); // not traced
}

namespace {

/// "bin1/" with the file "plain" and "bin2/" with the executables "plain" and "tool".
class ExecutablePath : public testing::Test {
protected:
    ExecutablePath()
    {
        make_directory(m_root.path("bin1"));
        make_directory(m_root.path("bin2"));
        write_file(m_root.path("bin1/plain"), "");
        set_mode(m_root.path("bin1/plain"), 0644);
        for (const char* name : { "bin2/plain", "bin2/tool" }) {
            write_file(m_root.path(name), "");
            set_mode(m_root.path(name), 0755);
        }
    }

    TemporaryDirectory m_root;
};

} // namespace

TEST_F(ExecutablePath, IsTheFirstExecutableInThePath)
{
    const EnvironmentScope path("PATH", m_root.path("bin1") + ":" + m_root.path("bin2"));
    EXPECT_EQ(Tavro::GetExecutablePath("tool").Get(), m_root.path("bin2/tool"));
    // A file that may not be executed is passed over.
    EXPECT_EQ(Tavro::GetExecutablePath("plain").Get(), m_root.path("bin2/plain"));
}

TEST_F(ExecutablePath, TheOrderOfThePathDecides)
{
    write_file(m_root.path("bin1/tool"), "");
    set_mode(m_root.path("bin1/tool"), 0755);
    const EnvironmentScope path("PATH", m_root.path("bin1") + ":" + m_root.path("bin2"));
    EXPECT_EQ(Tavro::GetExecutablePath("tool").Get(), m_root.path("bin1/tool"));
}

TEST_F(ExecutablePath, NotFoundIsAnEmptyPath)
{
    const EnvironmentScope path("PATH", m_root.path("bin1") + ":" + m_root.path("bin2"));
    EXPECT_FALSE(Tavro::GetExecutablePath("other").Initialized());
    EXPECT_FALSE(Tavro::GetExecutablePath("tool.exe").Initialized());
}

TEST_F(ExecutablePath, EmptyPartsOfThePathAreSkipped)
{
    const WorkingDirectoryScope inside(m_root.path("bin2"));
    const EnvironmentScope path("PATH", "::" + m_root.path("bin1") + "::");
    EXPECT_FALSE(Tavro::GetExecutablePath("tool").Initialized());
}

TEST_F(ExecutablePath, ARelativePartIsTakenAsItStands)
{
    const WorkingDirectoryScope inside(m_root.path());
    const EnvironmentScope path("PATH", "bin2");
    EXPECT_EQ(Tavro::GetExecutablePath("tool").Get(), "bin2/tool");
}

TEST_F(ExecutablePath, WithoutAPathNothingIsFound)
{
    {
        const EnvironmentScope path("PATH", std::nullopt);
        EXPECT_FALSE(Tavro::GetExecutablePath("tool").Initialized());
    }
    const EnvironmentScope path("PATH", "");
    EXPECT_FALSE(Tavro::GetExecutablePath("tool").Initialized());
}

// The separator is ":" on every platform.
TEST_F(ExecutablePath, AColonInADirectoryNameSplitsIt)
{
    make_directory(m_root.path("c:"));
    write_file(m_root.path("c:/tool"), "");
    set_mode(m_root.path("c:/tool"), 0755);
    const EnvironmentScope path("PATH", m_root.path("c:"));
    EXPECT_FALSE(Tavro::GetExecutablePath("tool").Initialized());
}

TEST_F(ExecutablePath, TheEnvironmentStaysAsItWas)
{
    const EnvironmentScope path("PATH", "x:y");
    (void)Tavro::GetExecutablePath("tool"); // not there
    EXPECT_STREQ(std::getenv("PATH"), "x:y");
}
