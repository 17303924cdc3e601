// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Surroundings.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <thread>

using Tavro::copyFile;
using Tavro::FilePath;
using namespace Testing;
using Names = std::vector<std::string>;

namespace {

constexpr std::size_t kBlock = std::size_t { 1 } << 20;

class CopyFile : public testing::Test {
protected:
    CopyFile() { set_mode(m_root.path(), 0755); }

    [[nodiscard]] FilePath at(const std::string& name) const { return FilePath(m_root.path(name)); }
    [[nodiscard]] std::string bytes_of(const std::string& name) const
    {
        return read_file(m_root.path(name));
    }
    void expect_exact_copy(const std::string& bytes)
    {
        write_file(m_root.path("from"), bytes);
        EXPECT_TRUE(copyFile(at("from"), at("to")));
        EXPECT_TRUE(bytes_of("to") == bytes) << bytes.size() << " bytes";
        EXPECT_TRUE(bytes_of("from") == bytes) << bytes.size() << " bytes";
    }

    TemporaryDirectory m_root;
};

} // namespace

TEST_F(CopyFile, BytesArriveAsTheyAre)
{
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    expect_exact_copy("text\r\nwith\nboth line ends\x1a" + all);
}

TEST_F(CopyFile, AnEmptyFileIsCopied) { expect_exact_copy(""); }

TEST_F(CopyFile, AFileBeyondTheBlockIsCopied)
{
    expect_exact_copy(pseudo_random_bytes(kBlock));
    expect_exact_copy(pseudo_random_bytes(3 * kBlock + 1));
}

TEST_F(CopyFile, ASparseFileIsCopied)
{
    {
        std::ofstream file(m_root.path("from"), std::ios::binary);
        file << "head";
        file.seekp(5'000'000);
        file << "middle";
    }
    std::filesystem::resize_file(m_root.path("from"), 8'000'001);
    std::string expected(8'000'001, '\0');
    expected.replace(0, 4, "head");
    expected.replace(5'000'000, 6, "middle");
    EXPECT_TRUE(copyFile(at("from"), at("to")));
    EXPECT_TRUE(bytes_of("to") == expected);
}

TEST_F(CopyFile, AnExistingLongerTargetIsReplacedWhole)
{
    write_file(m_root.path("from"), "short");
    write_file(m_root.path("to"), std::string(100'000, 'x'));
    EXPECT_TRUE(copyFile(at("from"), at("to")));
    EXPECT_EQ(bytes_of("to"), "short");
}

TEST_F(CopyFile, AnExistingTargetKeepsItsMode)
{
    write_file(m_root.path("from"), "x");
    write_file(m_root.path("to"), "y");
    set_mode(m_root.path("to"), 0640);
    EXPECT_TRUE(copyFile(at("from"), at("to")));
    EXPECT_EQ(mode_of(m_root.path("to")), 0640U);
}

TEST_F(CopyFile, AwkwardNamesAreCopied)
{
    for (const std::string& name : awkward_names()) {
        write_file(m_root.path(name), name);
        FilePath from; // unnormalised: the subject is what goes to the system
        from.Append(m_root.path(name));
        const FilePath to = from + " copy";
        EXPECT_TRUE(copyFile(from, to)) << name;
        EXPECT_EQ(bytes_of(name + " copy"), name);
    }
}

TEST_F(CopyFile, AMissingSourceThrowsBadParameter)
{
    write_file(m_root.path("to"), "kept");
    try {
        (void)copyFile(at("gone"), at("to")); // throws
        FAIL() << "nothing was thrown";
    } catch (const Tavro::BadParameter& error) {
        EXPECT_EQ(error.What(), "Internal data management error");
    }
    EXPECT_EQ(bytes_of("to"), "kept");
}

TEST_F(CopyFile, ADanglingLinkIsAMissingSource)
{
    make_link("nowhere", m_root.path("from"));
    EXPECT_THROW((void)copyFile(at("from"), at("to")), Tavro::BadParameter);
    EXPECT_FALSE(file_exists(m_root.path("to")));
}

TEST_F(CopyFile, LinksAreFollowedOnBothSides)
{
    write_file(m_root.path("source"), "new");
    write_file(m_root.path("target"), "old");
    make_link("source", m_root.path("from"));
    make_link("target", m_root.path("to"));
    EXPECT_TRUE(copyFile(at("from"), at("to")));
    EXPECT_EQ(bytes_of("target"), "new");
    EXPECT_EQ(names_in(m_root.path()), (Names { "from", "source", "target", "to" }));
}

TEST_F(CopyFile, ATargetThatCannotBeOpenedIsFalse)
{
    write_file(m_root.path("from"), "x");
    make_directory(m_root.path("dir"));
    EXPECT_FALSE(copyFile(at("from"), at("dir"))); // a directory in the way
    EXPECT_FALSE(copyFile(at("from"), at("gone/to")));
    EXPECT_FALSE(copyFile(at("from"), FilePath()));
    EXPECT_EQ(bytes_of("from"), "x");
    EXPECT_TRUE(FilePath(m_root.path("dir")).IsDirectory());
}

TEST_F(CopyFile, AReadOnlyTargetOrDirectoryIsFalse)
{
    write_file(m_root.path("from"), "x");
    write_file(m_root.path("readonly"), "kept");
    set_mode(m_root.path("from"), 0644);
    set_mode(m_root.path("readonly"), 0444);
    set_mode(m_root.path(), 0555);
    const Outcome outcome = run_as_ordinary_user([&] {
        std::cout << copyFile(at("from"), at("readonly")) << copyFile(at("from"), at("new"));
    });
    set_mode(m_root.path(), 0755);
    EXPECT_EQ(outcome.out, "00");
    EXPECT_EQ(bytes_of("readonly"), "kept");
    EXPECT_FALSE(file_exists(m_root.path("new")));
}

// A stream that could not be opened is no longer good, and that is all that is asked.
TEST_F(CopyFile, ASourceThatCannotBeOpenedCountsAsAnEmptyOne)
{
    write_file(m_root.path("from"), "secret");
    write_file(m_root.path("to"), "old");
    set_mode(m_root.path("from"), 0);
    set_mode(m_root.path("to"), 0666);
    const Outcome outcome = run_as_ordinary_user([&] {
        std::cout << copyFile(at("from"), at("to")) << copyFile(at("from"), at("gone/to"));
    });
    EXPECT_EQ(outcome.out, "11");
    EXPECT_EQ(bytes_of("to"), "");
}

TEST_F(CopyFile, ADirectoryAsSourceCountsAsAnEmptyOne)
{
    make_directory(m_root.path("dir"));
    EXPECT_TRUE(copyFile(at("dir"), at("to")));
    EXPECT_EQ(bytes_of("to"), "");
}

TEST_F(CopyFile, OntoItselfLeavesTheFileAndIsTrue)
{
    write_file(m_root.path("file"), "kept");
    make_link("file", m_root.path("link"));
    std::filesystem::create_hard_link(m_root.path("file"), m_root.path("hard"));
    EXPECT_TRUE(copyFile(at("file"), at("file")));
    EXPECT_TRUE(copyFile(at("file"), at("link")));
    EXPECT_TRUE(copyFile(at("link"), at("file")));
    EXPECT_TRUE(copyFile(at("file"), at("hard")));
    EXPECT_EQ(bytes_of("file"), "kept");
}

TEST_F(CopyFile, AWriteFailureIsFalseForSmallAndLargeFiles)
{
    write_file(m_root.path("small"), "x");
    write_file(m_root.path("large"), std::string(3 * kBlock, 'x'));
    const FilePath full("/dev/full"); // opens, and every write meets a full device
    if (!full.Exists())
        GTEST_SKIP() << "no /dev/full here";
    EXPECT_FALSE(copyFile(at("small"), full));
    EXPECT_FALSE(copyFile(at("large"), full));
}

TEST_F(CopyFile, AFullDeviceIsFalse)
{
    write_file(m_root.path("small"), "small");
    write_file(m_root.path("large"), std::string(kBlock, 'x'));
    make_directory(m_root.path("disk"));
    const Outcome outcome = run_isolated([&] {
        if (!mount_small_disk(m_root.path("disk"), 65536)) {
            std::cout << "not permitted";
            return;
        }
        std::cout << copyFile(at("small"), at("disk/fits"));
        std::cout << copyFile(at("large"), at("disk/large")); // fills the disk
        std::cout << copyFile(at("small"), at("disk/small"));
        std::cout << read_file(m_root.path("disk/fits"));
    });
    if (outcome.out == "not permitted")
        GTEST_SKIP() << "file systems cannot be mounted here";
    EXPECT_EQ(outcome.out, "100small");
}

TEST_F(CopyFile, FailuresAreReportedByTheResultAlone)
{
    write_file(m_root.path("from"), "x");
    const Outcome outcome
        = run_at_debug_level(2, [&] { std::cout << copyFile(at("from"), at("gone/to")); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err, "");
}

// The error passes through one frame, whose two detail lines come at level 2.
TEST_F(CopyFile, AMissingSourceIsReportedAsItPasses)
{
    const auto fail = [&] {
        try {
            (void)copyFile(at("gone"), at("to")); // throws
        } catch (const Tavro::BadParameter&) {
            std::cout << "caught";
        }
    };
    const Outcome brief = run_at_debug_level(1, fail);
    EXPECT_EQ(brief.out, "caught");
    EXPECT_EQ(brief.err, "Caught error in copyFile\n");
    EXPECT_EQ(without_line_numbers(run_at_debug_level(2, fail).err),
        "Caught error in copyFile\n"
        "Internal data management error\n"
        "Caught in tavrobase/FileCopying.cpp: N\n");
}
