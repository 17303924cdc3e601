// SPDX-License-Identifier: Apache-2.0
#include "tests/architecture/TreeRules.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using Lines = std::vector<std::string>;

const std::string kTree = VORTIK_SOURCE_DIR;

/// A tree of its own with one file in it.
class PlantedTree {
public:
    PlantedTree(const std::string& path, const std::string& text) { plant(path, text); }
    void plant(const std::string& path, const std::string& text)
    {
        const auto place = std::filesystem::path(m_directory.path()) / path;
        std::filesystem::create_directories(place.parent_path());
        Testing::write_file(place.string(), text);
    }
    [[nodiscard]] const std::string& root() const { return m_directory.path(); }

private:
    Testing::TemporaryDirectory m_directory;
};

TEST(Tree, IncludesGoDownTheFolderList) { EXPECT_EQ(Testing::upward_includes(kTree), Lines {}); }

TEST(Tree, APlantedUpwardIncludeIsFound)
{
    const PlantedTree tree("tavrobase/platform/Bad.h", "\n#include \"tavrobase/FilePath.h\"\n");
    EXPECT_EQ(Testing::upward_includes(tree.root()),
        Lines { "tavrobase/platform/Bad.h:2: tavrobase/FilePath.h" });
}

TEST(Tree, APlantedSidewaysIncludeIsFound)
{
    const PlantedTree tree("geometry/Bad.cpp", "#include \"links/LinkManager.h\"\n");
    EXPECT_EQ(
        Testing::upward_includes(tree.root()), Lines { "geometry/Bad.cpp:1: links/LinkManager.h" });
}

TEST(Tree, AnIncludeThatGoesDownIsNoFinding)
{
    const PlantedTree tree("case/Good.cpp",
        "#include \"case/ControllerInput.h\"\n#include \"tavrobase/FilePath.h\"\n#include <map>\n");
    EXPECT_EQ(Testing::upward_includes(tree.root()), Lines {});
}

TEST(Tree, TheSystemIsReachedThroughThePlatformFolderAlone)
{
    EXPECT_EQ(Testing::system_leaks(kTree), Lines {});
}

TEST(Tree, APlantedSystemHeaderIsFound)
{
    const PlantedTree tree("tavrobase/Bad.cpp", "#include <unistd.h>\n#ifdef _WIN32\n");
    EXPECT_EQ(Testing::system_leaks(tree.root()),
        (Lines {
            "tavrobase/Bad.cpp:1: #include <unistd.h>", "tavrobase/Bad.cpp:2: #ifdef _WIN32" }));
}

TEST(Tree, ASystemHeaderInThePlatformFolderIsNoFinding)
{
    const PlantedTree tree("tavrobase/platform/posix/Good.cpp", "#include <unistd.h>\n");
    EXPECT_EQ(Testing::system_leaks(tree.root()), Lines {});
}

TEST(Tree, EveryFolderTellsItsFiles) { EXPECT_EQ(Testing::untold_files(kTree), Lines {}); }

TEST(Tree, APlantedFolderWithoutReadmeIsFound)
{
    const PlantedTree tree("geometry/Thing.h", "");
    EXPECT_EQ(Testing::untold_files(tree.root()), Lines { "geometry: no README.md" });
}

TEST(Tree, APlantedUntoldFileIsFound)
{
    PlantedTree tree("geometry/Thing.h", "");
    tree.plant("geometry/README.md", "| `Other.h` | something else |\n");
    EXPECT_EQ(Testing::untold_files(tree.root()),
        Lines { "geometry/Thing.h: not in geometry/README.md" });
}

TEST(Tree, EveryPageIsReachedFromTheIndex) { EXPECT_EQ(Testing::unlinked_pages(kTree), Lines {}); }

TEST(Tree, APlantedUnlinkedPageIsFound)
{
    PlantedTree tree("docs/index.md", "[one](formats/one.md)\n");
    tree.plant("docs/formats/one.md", "one\n");
    tree.plant("docs/formats/two.md", "two\n");
    EXPECT_EQ(Testing::unlinked_pages(tree.root()),
        Lines { "docs/formats/two.md: not in docs/index.md" });
}

TEST(Tree, NoBuildFileLoosensFloatingPoint)
{
    EXPECT_EQ(Testing::fast_math_flags(kTree), Lines {});
}

TEST(Tree, APlantedFastMathFlagIsFound)
{
    const PlantedTree tree("cmake/Bad.cmake", "set(x 1)\nadd_compile_options(-Ofast)\n");
    EXPECT_EQ(Testing::fast_math_flags(tree.root()),
        Lines { "cmake/Bad.cmake:2: add_compile_options(-Ofast)" });
}

TEST(Tree, TheVersionIsStatedOnce)
{
    EXPECT_EQ(Testing::stray_versions(kTree, VORTIK_VERSION), Lines {});
}

TEST(Tree, APlantedSecondVersionIsFound)
{
    const PlantedTree tree("README.md", "Version 7.8.9, not 17.8.9.\n");
    EXPECT_EQ(Testing::stray_versions(tree.root(), "7.8.9"),
        Lines { "README.md:1: Version 7.8.9, not 17.8.9." });
    EXPECT_EQ(Testing::stray_versions(tree.root(), "8.9.1"), Lines {});
}

} // namespace
