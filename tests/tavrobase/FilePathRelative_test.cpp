// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FilePath.h"

#include "tests/support/Files.h"
#include "tests/support/Scopes.h"

#include <gtest/gtest.h>

using Tavro::FilePath;
using namespace Testing;

namespace {

/// A working directory with "c:/a/b/f.txt" and "c:/a/x/y/"; nothing begins with "d:" or "m".
class FilePathRelative : public testing::Test {
protected:
    FilePathRelative()
        : m_inside(m_root.path())
    {
        for (const char* directory : { "c:", "c:/a", "c:/a/b", "c:/a/x", "c:/a/x/y", "q" })
            make_directory(directory);
        write_file("c:/a/b/f.txt", "");
    }

    static std::string relative(const std::string& path, const std::string& base)
    {
        return FilePath(path).GetRelative(FilePath(base));
    }

    TemporaryDirectory m_root;
    WorkingDirectoryScope m_inside;
};

} // namespace

TEST_F(FilePathRelative, AFileInAnotherBranchClimbsAndDescends)
{
    EXPECT_EQ(relative("c:/a/b/f.txt", "c:/a/x/y"), "../../b/f.txt");
}

TEST_F(FilePathRelative, AFileInTheBaseIsItsName)
{
    EXPECT_EQ(relative("c:/a/b/f.txt", "c:/a/b"), "f.txt");
}

TEST_F(FilePathRelative, APathToItselfIsTheCurrentDirectory)
{
    EXPECT_EQ(relative("c:/a/b/f.txt", "c:/a/b/f.txt"), "./");
    EXPECT_EQ(relative("c:/a/b", "c:/a/b/"), "./");
    EXPECT_EQ(relative("q", "q"), "./");
    EXPECT_EQ(relative("m", "m"), "./");
    EXPECT_EQ(relative("m/n", "m/n"), "./");
}

TEST_F(FilePathRelative, AnotherRootGivesThePathUnchanged)
{
    EXPECT_EQ(relative("c:/a/b/f.txt", "d:/a"), "c:/a/b/f.txt");
    EXPECT_EQ(relative("c:/a/b", "d:/a"), "c:/a/b/"); // a directory gets its slash back
    EXPECT_EQ(relative("c:/a/b/f.txt", "/a"), "c:/a/b/f.txt");
    EXPECT_EQ(relative("m", "n"), "m");
}

TEST_F(FilePathRelative, ADirectoryKeepsItsSlash)
{
    EXPECT_EQ(relative("c:/a/b", "c:/a/x"), "../b/");
    EXPECT_EQ(relative("c:/a/x/y", "c:/a"), "x/y/");
}

TEST_F(FilePathRelative, AMissingPathHasNone)
{
    EXPECT_EQ(relative("m/b/g", "m/x/y"), "../../b/g");
    EXPECT_EQ(relative("m/b/g/", "m/x"), "../b/g/"); // its own slash makes an empty piece
}

TEST_F(FilePathRelative, ALaterEmptyPieceOfTheBaseDoesNotClimb)
{
    EXPECT_EQ(relative("m/f", "m/x/"), "../f"); // "x", and an empty piece
    EXPECT_EQ(relative("m/f", "m/x/z/"), "../../f");
}

TEST_F(FilePathRelative, TheFirstDifferingPieceOfTheBaseClimbsEvenIfEmpty)
{
    EXPECT_EQ(relative("m/f", "m/"), "../f");
}

TEST_F(FilePathRelative, APathAboveItsBaseClimbsToIt)
{
    EXPECT_EQ(relative("c:/a", "c:/a/x/y"), "../../");
    EXPECT_EQ(relative("m/a", "m/a/x/y"), "../..");
    EXPECT_EQ(relative("c:/a/b/f.txt", "c:/a/b/f.txt/z"), "..");
}

TEST_F(FilePathRelative, AbsolutePathsShareTheRoot)
{
    EXPECT_EQ(relative("/m/a/f", "/m/b"), "../a/f");
    EXPECT_EQ(relative("/m/f", "/n/k"), "../../m/f");
    EXPECT_EQ(relative(m_root.path("c:/a/b/f.txt"), m_root.path("c:/a/x")), "../b/f.txt");
}

TEST_F(FilePathRelative, TheRootDirectoryIsAnEmptyPiece)
{
    EXPECT_EQ(relative("/m/f", "/"), "m/f");
    EXPECT_EQ(relative("/", "/"), "./");
    EXPECT_EQ(relative("/", "m"), "/");
}

TEST_F(FilePathRelative, EmptyPathsAreOneEmptyPiece)
{
    EXPECT_EQ(FilePath().GetRelative(FilePath()), "./");
    EXPECT_EQ(FilePath().GetRelative(FilePath("m")), "");
    EXPECT_EQ(relative("m/f", ""), "m/f");
}
