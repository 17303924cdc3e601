// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/FilePath.h"
#include "tests/tavrobase/FilePathModel.h"

#include "tests/support/Files.h"
#include "tests/support/Scopes.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>

using Tavro::FilePath;
using namespace Testing;

namespace {

constexpr int kTexts = 100'000;

/// Texts rich in what the rules look at. The standard fixes the engine's output, and no
/// distribution of a library is used: one seed gives the same texts everywhere.
class RandomTexts {
public:
    explicit RandomTexts(unsigned seed)
        : m_random(seed)
    {
    }

    std::string next(std::string_view alphabet, std::size_t longest)
    {
        std::string text(below(longest + 1), '\0');
        for (char& character : text)
            character = alphabet[below(alphabet.size())];
        return text;
    }

    std::size_t below(std::size_t limit) { return m_random() % limit; }

private:
    std::mt19937 m_random;
};

// Letters of which some name directories of the fixture.
constexpr std::string_view kPathAlphabet = "////\\\\.....~ (&)abx";

/// A working directory with "a/", "a/b/", "b/", "b/a/" and the file "x".
class FilePathModel : public testing::Test {
protected:
    FilePathModel()
        : m_inside(m_root.path())
    {
        for (const char* directory : { "a", "a/b", "b", "b/a" })
            make_directory(directory);
        write_file("x", "");
    }

    /// What a call gave or threw.
    template <typename Call>
    static std::string result_of(Call call)
    {
        try {
            return "gave " + call();
        } catch (const std::out_of_range& error) {
            return std::string("threw ") + error.what();
        }
    }

    static void compare_normalisation(unsigned seed, Model::Counts& counts)
    {
        RandomTexts texts(seed);
        for (int i = 0; i < kTexts; ++i) {
            const std::string text = texts.next(kPathAlphabet, 24);
            ASSERT_EQ(result_of([&] { return FilePath(text).Get(); }), result_of([&] {
                return Model::construct(text, counts);
            })) << "constructor, text "
                << i << ": " << text;
            if (text == "./")
                continue; // has no defined result
            ASSERT_EQ(result_of([&] {
                FilePath path;
                path.Set(text);
                return path.Get();
            }),
                result_of([&] { return Model::set(text, counts); }))
                << "Set, text " << i << ": " << text;
        }
    }

    static void expect_all_branches(const Model::Counts& counts)
    {
        EXPECT_GT(counts.collapses, 10'000);
        EXPECT_GT(counts.lost_roots, 1'000);
        EXPECT_GT(counts.throws, 500);
        EXPECT_GT(counts.escapes, 10'000);
        EXPECT_GT(counts.slashes, 10'000);
        EXPECT_GT(counts.directories, 500);
    }

    TemporaryDirectory m_root;
    WorkingDirectoryScope m_inside;
};

} // namespace

TEST_F(FilePathModel, RandomTextsNormaliseAsTheModelDoesWithoutHome)
{
    const EnvironmentScope home("HOME", std::nullopt);
    Model::Counts counts;
    compare_normalisation(1, counts);
    expect_all_branches(counts);
    EXPECT_EQ(counts.homes, 0);
}

TEST_F(FilePathModel, RandomTextsNormaliseAsTheModelDoesWithHome)
{
    const EnvironmentScope home("HOME", "/h");
    Model::Counts counts;
    compare_normalisation(2, counts);
    expect_all_branches(counts);
    EXPECT_GT(counts.homes, 10'000);
}

// The value is put in after the slashes have been cleaned, so nothing but ".." is looked at in it.
TEST_F(FilePathModel, RandomTextsNormaliseAsTheModelDoesWithAnUncleanHome)
{
    const EnvironmentScope home("HOME", "/h//k/./..\\~/../");
    Model::Counts counts;
    compare_normalisation(3, counts);
    expect_all_branches(counts);
    EXPECT_GT(counts.homes, 10'000);
}

TEST_F(FilePathModel, RandomPathsAreRelativeAsTheModelSays)
{
    RandomTexts texts(4);
    long compared = 0;
    long climbs = 0;
    long unrelated = 0;
    long same = 0;
    long above = 0; // paths that end before their base
    // Few names and no clutter, so that two texts often share their beginning.
    const auto path_of = [&] {
        std::string text;
        for (std::size_t pieces = 1 + texts.below(5); pieces > 0; --pieces)
            text += std::string(1, "abxy"[texts.below(4)]) + "/";
        if (texts.below(4) != 0)
            text.pop_back();
        return texts.below(3) == 0 ? "/" + text : text;
    };
    while (compared < kTexts) {
        const FilePath path(path_of());
        const FilePath base(texts.below(20) == 0 ? path.Get() : path_of());
        const std::string result = path.GetRelative(base);
        ASSERT_EQ(result, Model::get_relative(path.Get(), base.Get()))
            << path.Get() << " seen from " << base.Get();
        ++compared;
        climbs += result.starts_with("../");
        unrelated += result == path.Get();
        same += result == "./";
        above += result.ends_with("..") || result.ends_with("../");
    }
    EXPECT_GT(climbs, 10'000);
    EXPECT_GT(unrelated, 10'000);
    EXPECT_GT(same, 1'000);
    EXPECT_GT(above, 1'000);
}

TEST_F(FilePathModel, RandomClutterIsRelativeAsTheModelSays)
{
    RandomTexts texts(5);
    long compared = 0;
    while (compared < kTexts) {
        // Appended as it stands: doubled slashes and ".." reach the comparison.
        FilePath path;
        FilePath base;
        path.Append(texts.next("//../aab", 10));
        base.Append(texts.next("//../aab", 10));
        // The last character of an existing directory is taken to be its slash.
        ASSERT_EQ(path.GetRelative(base), Model::get_relative(path.Get(), base.Get()))
            << path.Get() << " seen from " << base.Get();
        ++compared;
    }
}

TEST(SplitStringModel, RandomTextsSplitAsTheModelDoes)
{
    RandomTexts texts(6);
    long empty_pieces = 0;
    long unsplit = 0;
    long long_delimiters = 0;
    for (int i = 0; i < kTexts; ++i) {
        const std::string text = texts.next("//:a b\\", 20);
        std::string delimiter = texts.next("/:a", 3);
        if (delimiter.empty())
            delimiter = "/";
        const auto pieces = Tavro::SplitString(text, delimiter);
        ASSERT_EQ(pieces, Model::split_string(text, delimiter)) << text << " at " << delimiter;
        unsplit += pieces.size() == 1;
        long_delimiters += delimiter.size() > 1 && pieces.size() > 1;
        for (const std::string& piece : pieces)
            empty_pieces += piece.empty();
    }
    EXPECT_GT(empty_pieces, 10'000);
    EXPECT_GT(unsplit, 1'000);
    EXPECT_GT(long_delimiters, 1'000);
}
