// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FilePath.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iostream>

using Tavro::Daemonize;
using Tavro::FilePath;
using namespace Testing;

namespace {

/// What a program that redirects itself leaves in "out" and "err", which hold "old\n" before.
class DaemonizeFiles : public testing::Test {
protected:
    DaemonizeFiles()
    {
        write_file(m_root.path("out"), "old\n");
        write_file(m_root.path("err"), "old\n");
    }

    Outcome redirect(bool appendOut, bool appendErr)
    {
        return run_isolated([&] {
            std::cout << "before\n";
            Daemonize(
                FilePath(m_root.path("out")), FilePath(m_root.path("err")), appendOut, appendErr);
            std::cout << "stream" << std::endl;
            std::printf("printed\n");
            std::cerr << "error stream" << std::endl;
            std::fprintf(stderr, "error printed\n");
        });
    }

    TemporaryDirectory m_root;
};

} // namespace

TEST_F(DaemonizeFiles, ReplacesBothFiles)
{
    const Outcome outcome = redirect(false, false);
    EXPECT_EQ(outcome.out, "before\n"); // written out before the stream changes hands
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(read_file(m_root.path("out")), "stream\nprinted\n");
    EXPECT_EQ(read_file(m_root.path("err")), "error stream\nerror printed\n");
}

TEST_F(DaemonizeFiles, ContinuesBothFiles)
{
    (void)redirect(true, true); // the files tell
    EXPECT_EQ(read_file(m_root.path("out")), "old\nstream\nprinted\n");
    EXPECT_EQ(read_file(m_root.path("err")), "old\nerror stream\nerror printed\n");
}

TEST_F(DaemonizeFiles, EachFileHasItsOwnMode)
{
    (void)redirect(true, false); // the files tell
    EXPECT_EQ(read_file(m_root.path("out")), "old\nstream\nprinted\n");
    EXPECT_EQ(read_file(m_root.path("err")), "error stream\nerror printed\n");
    (void)redirect(false, true);
    EXPECT_EQ(read_file(m_root.path("out")), "stream\nprinted\n");
    EXPECT_EQ(read_file(m_root.path("err")),
        "error stream\nerror printed\nerror stream\nerror printed\n");
}

TEST_F(DaemonizeFiles, MakesMissingFiles)
{
    const Outcome outcome = run_isolated([&] {
        Daemonize(FilePath(m_root.path("new out")), FilePath(m_root.path("new err")), true, false);
        std::cout << "a";
        std::cerr << "b";
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(read_file(m_root.path("new out")), "a");
    EXPECT_EQ(read_file(m_root.path("new err")), "b");
}

TEST_F(DaemonizeFiles, AFileThatCannotBeOpenedDoesNotStopTheProgram)
{
    const Outcome outcome = run_isolated([&] {
        Daemonize(
            FilePath(m_root.path("gone/out")), FilePath(m_root.path("gone/err")), false, false);
        std::ofstream card(m_root.path("card"));
        std::cout << "to whom it was said before" << std::endl;
        std::cerr << "error, too" << std::endl;
        card << "card";
    });
    EXPECT_TRUE(outcome.exited);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "to whom it was said before\n");
    EXPECT_EQ(outcome.err, "error, too\n");
    EXPECT_EQ(read_file(m_root.path("card")), "card"); // no stray line in what was opened next
}
