// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FileUtilities.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"
#include "tests/support/Scopes.h"
#include "tests/support/Surroundings.h"
#include "tests/tavrobase/FileTestKit.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <iostream>

using Tavro::FilePath;
using Tavro::moveFile;
using namespace Testing;
using Names = std::vector<std::string>;

namespace {

class MoveFile : public testing::Test {
protected:
    MoveFile() { set_mode(m_root.path(), 0755); }

    [[nodiscard]] FilePath at(const std::string& name) const { return FilePath(m_root.path(name)); }
    [[nodiscard]] std::string bytes_of(const std::string& name) const
    {
        return read_file(m_root.path(name));
    }
    [[nodiscard]] Names names(const std::string& directory = ".") const
    {
        return names_in(m_root.path(directory));
    }
    void make(const std::vector<std::string>& entries)
    {
        for (const std::string& entry : entries) {
            if (entry.ends_with('/'))
                make_directory(m_root.path(entry));
            else
                write_file(m_root.path(entry), entry); // each file holds its first name
        }
    }

    TemporaryDirectory m_root;
};

} // namespace

TEST_F(MoveFile, AFileGoesToItsNewName)
{
    make({ "from" });
    EXPECT_TRUE(moveFile(at("from"), at("to")));
    EXPECT_EQ(names(), Names { "to" });
    EXPECT_EQ(bytes_of("to"), "from");
}

TEST_F(MoveFile, AFileReplacesAFile)
{
    make({ "from" });
    write_file(m_root.path("to"), "longer than what comes");
    EXPECT_TRUE(moveFile(at("from"), at("to")));
    EXPECT_EQ(names(), Names { "to" });
    EXPECT_EQ(bytes_of("to"), "from");
}

TEST_F(MoveFile, AFileReplacesADirectory)
{
    make({ "from", "to/", "to/a", "to/b/", "to/b/c" });
    EXPECT_TRUE(moveFile(at("from"), at("to")));
    EXPECT_EQ(names(), Names { "to" });
    EXPECT_EQ(bytes_of("to"), "from");
}

TEST_F(MoveFile, AFileReplacesALinkAndNotWhatItLeadsTo)
{
    make({ "from", "other" });
    make_link("other", m_root.path("to"));
    EXPECT_TRUE(moveFile(at("from"), at("to")));
    EXPECT_EQ(names(), (Names { "other", "to" }));
    EXPECT_EQ(bytes_of("to"), "from");
    EXPECT_EQ(bytes_of("other"), "other");
}

TEST_F(MoveFile, AMissingSourceThrowsBadParameter)
{
    make({ "to" });
    make_link("nowhere", m_root.path("dangling"));
    try {
        (void)moveFile(at("gone"), at("to")); // throws
        FAIL() << "nothing was thrown";
    } catch (const Tavro::BadParameter& error) {
        EXPECT_EQ(error.What(), "Internal data management error");
    }
    EXPECT_THROW((void)moveFile(at("dangling"), at("to")), Tavro::BadParameter);
    EXPECT_EQ(names(), (Names { "dangling", "to" }));
    EXPECT_EQ(bytes_of("to"), "to");
}

TEST_F(MoveFile, ATargetThatCannotBeRemovedIsFalseAndKeepsBoth)
{
    make({ "from", "to/", "to/.hidden" });
    EXPECT_FALSE(moveFile(at("from"), at("to")));
    EXPECT_EQ(bytes_of("from"), "from");
    EXPECT_EQ(bytes_of("to/.hidden"), "to/.hidden");
}

TEST_F(MoveFile, AFileToAMissingDirectorysNameIsFalseAndKeepsTheSource)
{
    make({ "from" });
    EXPECT_FALSE(moveFile(at("from"), at("gone/")));
    EXPECT_EQ(names(), Names { "from" });
    EXPECT_EQ(bytes_of("from"), "from");
}

TEST_F(MoveFile, AMissingTargetDirectoryIsFalseAndKeepsTheSource)
{
    make({ "from", "dir/", "dir/file" });
    EXPECT_FALSE(moveFile(at("from"), at("gone/to")));
    EXPECT_FALSE(moveFile(at("dir"), at("gone/to")));
    EXPECT_EQ(bytes_of("from"), "from");
    EXPECT_EQ(bytes_of("dir/file"), "dir/file");
}

TEST_F(MoveFile, ADirectoryGoesWithAllThatIsInIt)
{
    make({ "from/", "from/a", "from/b/", "from/b/c/", "from/b/c/d", "from/empty/" });
    EXPECT_TRUE(moveFile(at("from"), at("to")));
    EXPECT_EQ(names(), Names { "to" });
    EXPECT_EQ(names("to"), (Names { "a", "b", "empty" }));
    EXPECT_EQ(bytes_of("to/a"), "from/a");
    EXPECT_EQ(bytes_of("to/b/c/d"), "from/b/c/d");
    EXPECT_TRUE(at("to/empty").IsDirectory());
}

TEST_F(MoveFile, ADirectoryReplacesADirectory)
{
    make({ "from/", "from/new", "to/", "to/old", "to/inner/", "to/inner/old" });
    EXPECT_TRUE(moveFile(at("from"), at("to")));
    EXPECT_EQ(names(), Names { "to" });
    EXPECT_EQ(names("to"), Names { "new" });
    EXPECT_EQ(bytes_of("to/new"), "from/new");
}

TEST_F(MoveFile, AFileInTheWayOfADirectoryIsFalseAndKeepsBoth)
{
    make({ "from/", "from/a", "to" });
    const Outcome outcome
        = run_at_debug_level(1, [&] { std::cout << moveFile(at("from"), at("to")); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err, "Unable to create directory: File exists\n");
    EXPECT_EQ(bytes_of("to"), "to");
    EXPECT_EQ(bytes_of("from/a"), "from/a");
}

TEST_F(MoveFile, ADirectoryThatCannotBeReplacedIsFalseAndKeepsTheSource)
{
    make({ "from/", "from/a", "to/", "to/.hidden" });
    EXPECT_FALSE(moveFile(at("from"), at("to")));
    EXPECT_EQ(bytes_of("from/a"), "from/a");
    EXPECT_EQ(names("to"), Names { ".hidden" });
}

// Hidden names are not listed: they stay, and so the source does.
TEST_F(MoveFile, AHiddenFileStaysInTheSourceAndMakesTheResultFalse)
{
    make({ "from/", "from/a", "from/.hidden" });
    EXPECT_FALSE(moveFile(at("from"), at("to")));
    EXPECT_EQ(names("to"), Names { "a" });
    EXPECT_EQ(names("from"), Names { ".hidden" });
    EXPECT_EQ(bytes_of("from/.hidden"), "from/.hidden");
}

TEST_F(MoveFile, OntoItselfIsTrueAndDoesNothing)
{
    make({ "file", "dir/", "dir/a", "dir/.hidden" });
    EXPECT_TRUE(moveFile(at("file"), at("file")));
    EXPECT_TRUE(moveFile(at("dir"), at("dir")));
    {
        const WorkingDirectoryScope inside(m_root.path());
        EXPECT_TRUE(moveFile(at("file"), FilePath("file")));
        EXPECT_TRUE(moveFile(FilePath("dir"), at("dir/")));
    }
    EXPECT_EQ(bytes_of("file"), "file");
    EXPECT_EQ(names("dir"), (Names { ".hidden", "a" }));
}

TEST_F(MoveFile, IntoItselfIsFalseAndHarmsNothing)
{
    make({ "dir/", "dir/a", "dir/in/", "dir/in/b" });
    EXPECT_FALSE(moveFile(at("dir"), at("dir/new")));
    EXPECT_FALSE(moveFile(at("dir"), at("dir/in")));
    EXPECT_FALSE(moveFile(at("dir"), at("dir/in/new")));
    make_link("dir", m_root.path("link"));
    EXPECT_FALSE(moveFile(at("dir"), at("link/new")));
    EXPECT_EQ(names("dir"), (Names { "a", "in" }));
    EXPECT_EQ(bytes_of("dir/a"), "dir/a");
    EXPECT_EQ(bytes_of("dir/in/b"), "dir/in/b");
}

TEST_F(MoveFile, OntoADirectoryThatHoldsItIsFalseAndHarmsNothing)
{
    make({ "dir/", "dir/a", "dir/in/", "dir/in/b" });
    EXPECT_FALSE(moveFile(at("dir/a"), at("dir")));
    EXPECT_FALSE(moveFile(at("dir/in"), at("dir")));
    EXPECT_FALSE(moveFile(at("dir/in/b"), at("dir")));
    EXPECT_EQ(bytes_of("dir/a"), "dir/a");
    EXPECT_EQ(bytes_of("dir/in/b"), "dir/in/b");
}

TEST_F(MoveFile, ANameThatOnlyBeginsLikeTheSourceIsNotWithinIt)
{
    make({ "dir/", "dir/a" });
    EXPECT_TRUE(moveFile(at("dir"), at("directory")));
    EXPECT_EQ(bytes_of("directory/a"), "dir/a");
    EXPECT_EQ(names(), Names { "directory" });
}

TEST_F(MoveFile, ALinkToAFileBecomesTheFileAndTheFileStays)
{
    make({ "file" });
    make_link("file", m_root.path("link"));
    EXPECT_TRUE(moveFile(at("link"), at("to")));
    EXPECT_EQ(names(), (Names { "file", "to" }));
    EXPECT_EQ(bytes_of("to"), "file");
    EXPECT_EQ(bytes_of("file"), "file");
}

TEST_F(MoveFile, ALinkToItsOwnTargetLosesNoBytes)
{
    make({ "file" });
    make_link("file", m_root.path("link"));
    (void)moveFile(at("link"), at("file")); // whatever it may be called, the bytes stay
    EXPECT_EQ(bytes_of("file"), "file");
}

TEST_F(MoveFile, AFileOntoALinkToItselfLosesNoBytes)
{
    make({ "file" });
    make_link("file", m_root.path("link"));
    EXPECT_TRUE(moveFile(at("file"), at("link")));
    EXPECT_EQ(names(), Names { "link" });
    EXPECT_EQ(bytes_of("link"), "file");
}

TEST_F(MoveFile, AFileOntoAHardLinkOfItselfLosesNoBytes)
{
    make({ "file" });
    std::filesystem::create_hard_link(m_root.path("file"), m_root.path("other"));
    EXPECT_TRUE(moveFile(at("file"), at("other")));
    EXPECT_EQ(names(), Names { "other" });
    EXPECT_EQ(bytes_of("other"), "file");
}

TEST_F(MoveFile, AnUnreadableSourceIsFalseAndKeepsBoth)
{
    make({ "from", "to" });
    set_mode(m_root.path("from"), 0);
    set_mode(m_root.path(), 0777);
    const Outcome outcome
        = run_as_ordinary_user([&] { std::cout << moveFile(at("from"), at("to")); });
    set_mode(m_root.path("from"), 0644);
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(bytes_of("from"), "from");
    EXPECT_EQ(bytes_of("to"), "to");
}

TEST_F(MoveFile, AFullDeviceIsFalseAndKeepsTheSource)
{
    make({ "dir/", "disk/" });
    write_file(m_root.path("large"), std::string(1'000'000, 'x'));
    write_file(m_root.path("dir/large"), std::string(1'000'000, 'y'));
    const Outcome outcome = run_isolated([&] {
        if (!mount_small_disk(m_root.path("disk"), 65536))
            std::cout << "not permitted";
        else
            std::cout << moveFile(at("large"), at("disk/large"))
                      << moveFile(at("dir"), at("disk/dir"));
    });
    if (outcome.out == "not permitted")
        GTEST_SKIP() << "file systems cannot be mounted here";
    EXPECT_EQ(outcome.out, "00");
    EXPECT_TRUE(bytes_of("large") == std::string(1'000'000, 'x'));
    EXPECT_TRUE(bytes_of("dir/large") == std::string(1'000'000, 'y'));
}

TEST_F(MoveFile, GoesToAnotherDevice)
{
    make({ "dir/", "dir/file", "disk/" });
    const Outcome outcome = run_isolated([&] {
        if (!mount_small_disk(m_root.path("disk"), 65536))
            std::cout << "not permitted";
        else
            std::cout << moveFile(at("dir"), at("disk/dir")) << bytes_of("disk/dir/file");
    });
    if (outcome.out == "not permitted")
        GTEST_SKIP() << "file systems cannot be mounted here";
    EXPECT_EQ(outcome.out, "1dir/file");
    EXPECT_EQ(names(), Names { "disk" });
}

TEST_F(MoveFile, ASourceThatCannotBeRemovedIsFalseButCopied)
{
    make({ "closed/", "closed/file", "open/" });
    set_mode(m_root.path("open"), 0777);
    set_mode(m_root.path("closed"), 0555);
    const Outcome outcome = run_as_ordinary_user([&] {
        std::cout << moveFile(at("closed/file"), at("open/file"))
                  << moveFile(at("closed"), at("open/dir"));
    });
    set_mode(m_root.path("closed"), 0755);
    EXPECT_EQ(outcome.out, "00");
    EXPECT_EQ(bytes_of("closed/file"), "closed/file");
    EXPECT_EQ(bytes_of("open/file"), "closed/file");
    EXPECT_EQ(bytes_of("open/dir/file"), "closed/file");
}

// "b" of the source cannot be read. Whichever of the three is listed first, none may be lost.
TEST_F(MoveFile, ADirectoryMoveThatFailsMidwayLosesNothing)
{
    make({ "from/", "from/a", "from/b", "from/c" });
    set_mode(m_root.path("from/b"), 0);
    set_mode(m_root.path("from"), 0777);
    set_mode(m_root.path(), 0777);
    const Outcome outcome
        = run_as_ordinary_user([&] { std::cout << moveFile(at("from"), at("to")); });
    set_mode(m_root.path("from/b"), 0644);
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(bytes_of("from/b"), "from/b");
    for (const std::string name : { "a", "c" }) {
        const std::string place = file_exists(m_root.path("to/" + name)) ? "to/" : "from/";
        EXPECT_EQ(bytes_of(place + name), "from/" + name);
    }
}

TEST_F(MoveFile, AwkwardNamesMoveAloneAndInADirectory)
{
    make({ "from/" });
    for (const std::string& name : awkward_names()) {
        if (name.starts_with('.'))
            continue; // hidden
        write_file(m_root.path("from/") + name, name);
        FilePath alone; // unnormalised: the subject is what goes to the system
        alone.Append(m_root.path(name));
        write_file(m_root.path(name), name);
        EXPECT_TRUE(moveFile(alone, alone + " moved")) << name;
        EXPECT_EQ(bytes_of(name + " moved"), name);
        EXPECT_FALSE(file_exists(m_root.path(name))) << name;
    }
    EXPECT_TRUE(moveFile(at("from"), at("to")));
    for (const std::string& name : awkward_names()) {
        if (!name.starts_with('.')) {
            EXPECT_EQ(bytes_of("to/" + name), name);
        }
    }
}

// The visible file goes; the hidden one keeps the source, whose removal then fails.
TEST_F(MoveFile, TheTraceOfAFailingNestIsATree)
{
    make({ "from/", "from/a", "from/.hidden" });
    const Outcome outcome
        = run_at_debug_level(5, [&] { std::cout << moveFile(at("from"), at("to")); });
    EXPECT_EQ(outcome.out, "0");
    EXPECT_EQ(outcome.err,
        "Entering moveFile\n"
        "|  Entering createDirectory\n"
        "|  Leaving createDirectory\n"
        "|  Entering GetDirectoryContents\n"
        "|  Leaving GetDirectoryContents\n"
        "|  Entering moveFile\n"
        "|  |  Entering copyFile\n"
        "|  |  Leaving copyFile\n"
        "|  |  Entering RemovePath\n"
        "|  |  Leaving RemovePath\n"
        "|  Leaving moveFile\n"
        "|  Entering GetDirectoryContents\n"
        "|  Leaving GetDirectoryContents\n"
        "|  Entering RemovePath\n"
        "|  |  Entering GetDirectoryContents\n"
        "|  |  Leaving GetDirectoryContents\n"
        "|  |  Entering GetDirectoryContents\n"
        "|  |  Leaving GetDirectoryContents\n"
        "|  Leaving RemovePath\n"
        "Leaving moveFile\n");
}

// The error is built and asked for its words in traced functions of its own; it dies in the caller.
TEST_F(MoveFile, TheTraceOfAMissingSourceShowsTheErrorPassing)
{
    const Outcome outcome = run_at_debug_level(5, [&] {
        try {
            (void)moveFile(at("gone"), at("to")); // throws
        } catch (const Tavro::Exception&) {
            std::cout << "caught";
        }
    });
    EXPECT_EQ(outcome.out, "caught");
    EXPECT_EQ(without_line_numbers(outcome.err),
        "Entering moveFile\n"
        "|  Entering Exception::Exception\n"
        "|  Leaving Exception::Exception\n"
        "|  Entering BadParameter::BadParameter\n"
        "|  Leaving BadParameter::BadParameter\n"
        "Caught error in moveFile\n"
        "|  Entering Exception::What\n"
        "|  Leaving Exception::What\n"
        "Internal data management error\n"
        "Caught in tavrobase/FileMoving.cpp: N\n"
        "Leaving moveFile\n"
        "Entering BadParameter::~BadParameter\n"
        "Leaving BadParameter::~BadParameter\n"
        "Entering Exception::~Exception\n"
        "Leaving Exception::~Exception\n");
}
