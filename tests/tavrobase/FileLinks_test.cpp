// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>

using Tavro::FilePath;
using Tavro::LinkFile;
using Tavro::SymlinkFile;
using namespace Testing;

namespace {

/// Both functions, which share their checks, with the words by which their failures differ.
struct Kind {
    const char* name;
    bool (*make)(FilePath, FilePath);
    const char* failure;
};

class FileLinks : public testing::TestWithParam<Kind> {
protected:
    FileLinks()
    {
        set_mode(m_root.path(), 0755);
        write_file(m_root.path("from"), "text");
    }

    [[nodiscard]] FilePath at(const std::string& name) const { return FilePath(m_root.path(name)); }
    [[nodiscard]] static bool make(const FilePath& from, const FilePath& to)
    {
        return GetParam().make(from, to);
    }
    /// The three lines of a failure.
    [[nodiscard]] static std::string report(const FilePath& from, const FilePath& to)
    {
        return std::string(GetParam().failure) + "\n    " + from.Get() + "\n to " + to.Get() + "\n";
    }

    TemporaryDirectory m_root;
};

INSTANTIATE_TEST_SUITE_P(Kinds, FileLinks,
    testing::Values(Kind { "Symbolic", SymlinkFile, "Unable to create a symlink of file:" },
        Kind { "Hard", LinkFile, "Unable to create a link of file:" }),
    [](const auto& kind) { return kind.param.name; });

} // namespace

TEST_P(FileLinks, TheLinkLeadsToTheFile)
{
    EXPECT_TRUE(make(at("from"), at("to")));
    EXPECT_EQ(read_file(m_root.path("to")), "text");
    write_file(m_root.path("from"), "changed");
    EXPECT_EQ(read_file(m_root.path("to")), "changed");
}

TEST_P(FileLinks, SuccessPrintsNothing)
{
    const Outcome outcome = run_at_debug_level(2, [&] { std::cout << make(at("from"), at("to")); });
    EXPECT_EQ(outcome.out, "1");
    EXPECT_EQ(outcome.err, "");
}

TEST_P(FileLinks, ARelativeSourceIsReachedFromTheLinksDirectory)
{
    make_directory(m_root.path("in"));
    const WorkingDirectoryScope inside(m_root.path());
    EXPECT_TRUE(make(FilePath("from"), FilePath("in/to")));
    EXPECT_EQ(read_file(m_root.path("in/to")), "text");
}

TEST_P(FileLinks, AMissingSourceThrowsBadParameter)
{
    write_file(m_root.path("to"), "kept");
    try {
        (void)make(at("gone"), at("to")); // throws
        FAIL() << "nothing was thrown";
    } catch (const Tavro::BadParameter& error) {
        EXPECT_EQ(error.What(), "Internal data management error");
    }
    EXPECT_EQ(read_file(m_root.path("to")), "kept");
}

TEST_P(FileLinks, ADirectoryAsSourceThrowsBadParameter)
{
    make_directory(m_root.path("dir"));
    EXPECT_THROW((void)make(at("dir"), at("to")), Tavro::BadParameter);
    EXPECT_FALSE(file_exists(m_root.path("to")));
}

TEST_P(FileLinks, ADanglingLinkAsSourceThrowsBadParameter)
{
    make_link("nowhere", m_root.path("dangling"));
    EXPECT_THROW((void)make(at("dangling"), at("to")), Tavro::BadParameter);
}

TEST_P(FileLinks, AnExistingTargetIsReplaced)
{
    write_file(m_root.path("to"), "old");
    EXPECT_TRUE(make(at("from"), at("to")));
    EXPECT_EQ(read_file(m_root.path("to")), "text");
}

TEST_P(FileLinks, ADirectoryInTheWayIsReplaced)
{
    make_directory(m_root.path("to"));
    write_file(m_root.path("to/file"), "old");
    EXPECT_TRUE(make(at("from"), at("to"))); // held as "to/"
    EXPECT_EQ(read_file(m_root.path("to")), "text");
}

TEST_P(FileLinks, ATargetThatCannotBeRemovedIsFalseWithoutAReport)
{
    make_directory(m_root.path("to"));
    write_file(m_root.path("to/.hidden"), "kept");
    const Outcome outcome = run_at_debug_level(1, [&] { std::cout << make(at("from"), at("to")); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(read_file(m_root.path("to/.hidden")), "kept");
}

TEST_P(FileLinks, AMissingDirectoryIsAReportedFailure)
{
    const Outcome outcome
        = run_at_debug_level(1, [&] { std::cout << make(at("from"), at("gone/to")); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err, report(at("from"), at("gone/to")));
}

TEST_P(FileLinks, AReadOnlyDirectoryIsAReportedFailure)
{
    make_directory(m_root.path("closed"));
    set_mode(m_root.path("closed"), 0555);
    const Outcome outcome = run_at_debug_level(1, [&] {
        const Outcome inner
            = run_as_ordinary_user([&] { std::cout << make(at("from"), at("closed/to")); });
        std::cout << inner.out;
        std::cerr << inner.err;
    });
    set_mode(m_root.path("closed"), 0755);
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err, report(at("from"), at("closed/to")));
}

TEST_P(FileLinks, OntoItselfIsAReportedFailureThatKeepsTheFile)
{
    const Outcome outcome
        = run_at_debug_level(1, [&] { std::cout << make(at("from"), at("from")); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err, report(at("from"), at("from")));
    EXPECT_EQ(read_file(m_root.path("from")), "text");
}

TEST_P(FileLinks, ADanglingLinkAsTargetIsReplaced)
{
    make_link("nowhere", m_root.path("to"));
    const Outcome outcome = run_at_debug_level(1, [&] { std::cout << make(at("from"), at("to")); });
    EXPECT_EQ(outcome.out, "1");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(read_file(m_root.path("to")), "text");
}

TEST_P(FileLinks, AwkwardNamesAreLinked)
{
    for (const std::string& name : awkward_names()) {
        FilePath from; // unnormalised: the subject is what goes to the system
        from.Append(m_root.path(name));
        write_file(m_root.path(name), name);
        EXPECT_TRUE(make(from, from + " link")) << name;
        EXPECT_EQ(read_file(m_root.path(name + " link")), name);
    }
}

TEST(SymlinkFile, MakesASymbolicLink)
{
    const TemporaryDirectory root;
    write_file(root.path("from"), "");
    EXPECT_TRUE(SymlinkFile(FilePath(root.path("from")), FilePath(root.path("to"))));
    EXPECT_TRUE(std::filesystem::is_symlink(root.path("to")));
}

TEST(LinkFile, MakesAHardLink)
{
    const TemporaryDirectory root;
    write_file(root.path("from"), "");
    EXPECT_TRUE(LinkFile(FilePath(root.path("from")), FilePath(root.path("to"))));
    EXPECT_FALSE(std::filesystem::is_symlink(root.path("to")));
    EXPECT_EQ(std::filesystem::hard_link_count(root.path("from")), 2U);
}

TEST(FileLinksTrace, ShowsTheRemovalOfTheTarget)
{
    const TemporaryDirectory root;
    write_file(root.path("from"), "");
    write_file(root.path("to"), "");
    const Outcome outcome = run_at_debug_level(5, [&] {
        (void)SymlinkFile(FilePath(root.path("from")), FilePath(root.path("to"))); // traced
        (void)LinkFile(FilePath(root.path("from")), FilePath(root.path("new"))); // traced
    });
    EXPECT_EQ(outcome.err,
        "Entering SymlinkFile\n"
        "|  Entering RemovePath\n"
        "|  Leaving RemovePath\n"
        "Leaving SymlinkFile\n"
        "Entering LinkFile\n"
        "Leaving LinkFile\n");
}
