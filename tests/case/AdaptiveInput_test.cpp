// SPDX-License-Identifier: Apache-2.0
#include "case/AdaptiveInput.h"

#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/Golden.h"
#include "tests/case/HexText.h"
#include "tests/case/SolverInput.h"
#include "tests/support/Isolated.h"
#include "tests/support/Locales.h"

#include <iostream>

namespace {

using Testing::bytes_of_hex;
using Testing::golden;
using Testing::read_file;
using Testing::same_bytes;
using Testing::write_file;

std::string golden_bytes(const std::string& name) { return bytes_of_hex(golden(name)); }

/// Head of `everything`: level limit 4, background level 3.
constexpr const char* kEveryRule = "4 3 -1 -2 -3 1 2 3\n"
                                   "0 1 0 1 0 1   0       0 0 0 0 0 0\n"
                                   "0 1 0 1 0 1   5       0 0 0 0 0 0\n"
                                   "0 1 0 1 0 1   -65537  0 0 0 0 0 0\n"
                                   "0 .125 0 .125 0 .125  -65536  0 0 0 0 0 0\n"
                                   "0 2 0 2 0 2   -3      0 0 0 0 0 0\n"
                                   "0 1 0 2 0 1   0       0 0 0 0 0 0\n"
                                   "0 4 0 4 0 4   1       -1 1 -2 2 -3 4\n"
                                   "4 8 4 8 4 8   2       0 0 0 0 0 0";

class AdaptiveInput : public testing::Test {
protected:
    AdaptiveInput()
    {
        m_input.m_strCaseName = "hover";
        Testing::make_directory(path(""));
        use("hover.treegen", golden_bytes("before.treegen.hex"));
    }
    ~AdaptiveInput() override { g_info.m_fpTreeGenFile.Set(""); }

    [[nodiscard]] std::string path(const std::string& name) const
    {
        return m_directory.path("Grid_Output/" + name);
    }
    /// Makes a file the grid generator's.
    void use(const std::string& name, const std::string& bytes)
    {
        write_file(path(name), bytes);
        g_info.m_fpTreeGenFile.Set(path(name));
    }
    void labels(const std::string& text) { write_file(m_solverInput.path("Label.dat"), text); }
    [[nodiscard]] bool create() { return create_adaptive_input(m_input, m_error); }
    [[nodiscard]] std::string adapted() const { return read_file(path("hover.treegen-adapted")); }

    Testing::TemporaryDirectory m_directory;
    Testing::SolverInput m_solverInput;
    VRK::ControllerInput m_input = Testing::blank_case();
    std::string m_error = "untouched";
};

TEST_F(AdaptiveInput, ReplacesTheBoxesAndKeepsTheTriangles)
{
    labels("4 4\n0 0 0 8 8 8\n0 2 2 4 4 6 1 0 0 0 0 0 0\n");
    write_file(path("hover.treegen-adapted"), std::string(10000, 'x'));
    ASSERT_TRUE(create()) << m_error;
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-typical.treegen.hex"), adapted()));
    EXPECT_EQ(g_info.m_fpTreeGenFile.Get(), path("hover.treegen-adapted"));
    EXPECT_EQ(m_error, "untouched");
    EXPECT_TRUE(same_bytes(golden_bytes("before.treegen.hex"), read_file(path("hover.treegen"))));
}

TEST_F(AdaptiveInput, EveryRuleOfTheLabelsMakesItsBox)
{
    labels(kEveryRule);
    const auto outcome = Testing::run_isolated([this] { std::cout << create(); });
    EXPECT_EQ(outcome.out, "1");
    EXPECT_EQ(outcome.err, "ERROR: Non-Consistent Cartesian Ref Box Omitted!\n");
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-everything.treegen.hex"), adapted()));
}

TEST_F(AdaptiveInput, LabelsAreReadTheSameUnderACommaLocale)
{
    labels(kEveryRule);
    const auto outcome = Testing::run_isolated([this] {
        if (!Testing::use_comma_locale())
            std::cout << "skip";
        else
            std::cout << create();
    });
    if (outcome.out == "skip")
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    EXPECT_EQ(outcome.out, "1");
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-everything.treegen.hex"), adapted()));
}

TEST_F(AdaptiveInput, LabelCutShortDoesNotCount)
{
    labels(std::string(kEveryRule) + "\n0 4 0 4 0 4 0 0 0 0 0 0");
    const auto outcome = Testing::run_isolated([this] { std::cout << create(); });
    EXPECT_EQ(outcome.out, "1");
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-everything.treegen.hex"), adapted()));
}

TEST_F(AdaptiveInput, WithoutALabelFileTheBackgroundTakesItsDefaults)
{
    const auto outcome = Testing::run_isolated([this] {
        std::cout << create();
        std::cout << ' ' << g_info.m_fpTreeGenFile.Get();
    });
    EXPECT_EQ(outcome.out,
        "Could not find or load Labels File: " + g_info.m_fpSolverInput.Get() + "/Label.dat\n1 "
            + path("hover.treegen-adapted"));
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-without-labels.treegen.hex"), adapted()));
}

TEST_F(AdaptiveInput, EmptyLabelFileDoesTheSameWithoutAWord)
{
    labels("");
    const auto outcome = Testing::run_isolated([this] { std::cout << create(); });
    EXPECT_EQ(outcome.out, "1");
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-without-labels.treegen.hex"), adapted()));
}

TEST_F(AdaptiveInput, EmptyLabelListLeavesTheBackgroundAndAllTriangles)
{
    labels("11 10 0 0 0 0 0 0\n");
    ASSERT_TRUE(create());
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-without-labels.treegen.hex"), adapted()));
}

TEST_F(AdaptiveInput, ChainedAdaptationsDropTheBoxesOfTheOneBefore)
{
    labels(kEveryRule);
    ASSERT_TRUE(create());
    write_file(path("hover.treegen-adapted.old"), adapted());
    g_info.m_fpTreeGenFile.Set(path("hover.treegen-adapted.old"));
    labels("4 4\n0 0 0 8 8 8\n0 2 2 4 4 6 1 0 0 0 0 0 0\n");
    ASSERT_TRUE(create());
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-typical.treegen.hex"), adapted()));
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-everything.treegen.hex"),
        read_file(path("hover.treegen-adapted.old"))));
}

TEST_F(AdaptiveInput, EntityOfUnknownKindIsNotReadFurther)
{
    // Five entities: a word 77 stands before the four that follow.
    std::string old = golden_bytes("before.treegen.hex");
    old.replace(88, 4, bytes_of_hex("05 00x3 4D 00x3"));
    use("hover.treegen", old);
    labels("");
    ASSERT_TRUE(create());
    // The same as without it, since an unknown kind is not copied.
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-without-labels.treegen.hex"), adapted()));
}

TEST_F(AdaptiveInput, WalkAmongUnknownKindsEndsWithTheFile)
{
    // An entity of kind 4 in the place of the first box: its 56 further bytes are 5, then twelve
    // words of zero, then 9, taken as kinds one by one until the count of four is used up.
    std::string old = golden_bytes("before.treegen.hex");
    old.replace(92, 4, bytes_of_hex("04 00x3"));
    use("hover.treegen", old);
    ASSERT_TRUE(create());
    EXPECT_EQ(adapted().size(), 92U + 60) << "no triangle is reached";
    // With a count beyond the end the walk ends there: 14 words of the lost box and both triangles.
    old.replace(88, 4, bytes_of_hex("FFx4"));
    use("hover.treegen", old);
    ASSERT_TRUE(create());
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-without-labels.treegen.hex"), adapted()));
}

TEST_F(AdaptiveInput, BytesBehindTheLastEntityAreNotLookedAt)
{
    use("hover.treegen", golden_bytes("before.treegen.hex") + "anything");
    ASSERT_TRUE(create());
    EXPECT_TRUE(same_bytes(golden_bytes("adapted-without-labels.treegen.hex"), adapted()));
}

TEST_F(AdaptiveInput, MissingTreegenFileIsAnError)
{
    g_info.m_fpTreeGenFile.Set(path("missing.treegen"));
    EXPECT_FALSE(create());
    EXPECT_EQ(m_error, "could not read treegen file");
    EXPECT_EQ(g_info.m_fpTreeGenFile.Get(), path("missing.treegen"));
    EXPECT_FALSE(Testing::file_exists(path("hover.treegen-adapted")));
}

TEST_F(AdaptiveInput, TreegenFileCutAtAnyByteIsAnError)
{
    const std::string whole = golden_bytes("before.treegen.hex");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        std::istringstream old(whole.substr(0, size));
        std::istringstream labels("4 4");
        std::ostringstream adapted;
        EXPECT_FALSE(adapt_grid_gen_input(old, labels, adapted)) << "cut to " << size;
    }
    use("hover.treegen", whole.substr(0, whole.size() - 1));
    EXPECT_FALSE(create());
    EXPECT_EQ(m_error, "could not read treegen file");
    EXPECT_EQ(g_info.m_fpTreeGenFile.Get(), path("hover.treegen"));
    EXPECT_EQ(Testing::names_in(path("")), (std::vector<std::string> { "hover.treegen" }));
}

TEST_F(AdaptiveInput, CountOfPointsBeyondTheFileIsAnErrorAndLeavesNoNewFile)
{
    std::string old = golden_bytes("before.treegen.hex");
    old.replace(60, 4, bytes_of_hex("FFx4"));
    use("hover.treegen", old);
    EXPECT_FALSE(create());
    EXPECT_FALSE(Testing::file_exists(path("hover.treegen-adapted")));
}

TEST_F(AdaptiveInput, NewFileThatCannotBeWrittenIsAnError)
{
    Testing::make_directory(path("hover.treegen-adapted"));
    EXPECT_FALSE(create());
    EXPECT_EQ(m_error, "could not write treegen file");
    EXPECT_EQ(g_info.m_fpTreeGenFile.Get(), path("hover.treegen"));
}

TEST_F(AdaptiveInput, DirectoryInThePlaceOfTheNewFileStays)
{
    Testing::make_directory(path("hover.treegen-adapted"));
    EXPECT_FALSE(create());
    EXPECT_TRUE(Testing::file_exists(path("hover.treegen-adapted")));
}

TEST_F(AdaptiveInput, FullDiskIsAnErrorAndLeavesNoNewFile)
{
    if (!Testing::file_exists("/dev/full"))
        GTEST_SKIP() << "no /dev/full here";
    Testing::make_link("/dev/full", path("hover.treegen-adapted"));
    EXPECT_FALSE(create());
    EXPECT_EQ(m_error, "could not write treegen file");
    EXPECT_EQ(g_info.m_fpTreeGenFile.Get(), path("hover.treegen"));
    EXPECT_EQ(Testing::names_in(path("")), (std::vector<std::string> { "hover.treegen" }));
    EXPECT_TRUE(Testing::file_exists("/dev/full"));
}

TEST_F(AdaptiveInput, FileIsNotAdaptedOntoItselfUnderAnotherName)
{
    Testing::make_link(path("hover.treegen"), path("hover.treegen-adapted"));
    EXPECT_FALSE(create());
    EXPECT_EQ(m_error, "treegen file cannot be adapted onto itself");
    EXPECT_TRUE(same_bytes(golden_bytes("before.treegen.hex"), read_file(path("hover.treegen"))));
}

TEST_F(AdaptiveInput, StreamIsWrittenFromWhereItStands)
{
    std::istringstream old(golden_bytes("before.treegen.hex"));
    std::istringstream noLabels;
    std::ostringstream stream;
    stream << "before";
    EXPECT_TRUE(adapt_grid_gen_input(old, noLabels, stream));
    EXPECT_TRUE(
        same_bytes("before" + golden_bytes("adapted-without-labels.treegen.hex"), stream.str()));
}

TEST_F(AdaptiveInput, LevelsBelowZeroAreStoredInThirtyTwoBits)
{
    // Limit 0 caps at level -1, and a background level of 0 is level -1. The boxes of 60 bytes
    // stand behind 88 bytes and the count of 4.
    labels("0 0 0 0 0 0 0 0\n0 1 0 1 0 1 0 0 0 0 0 0 0\n");
    ASSERT_TRUE(create());
    EXPECT_TRUE(same_bytes(bytes_of_hex("03 00x3 FFx4"), adapted().substr(92, 8)));
    EXPECT_TRUE(same_bytes(bytes_of_hex("03 00x3 FFx4"), adapted().substr(152, 8)));
    labels("-6 -1 0 0 0 0 0 0\n0 1 0 1 0 1 -65536 0 0 0 0 0 0\n"
           "0 1 0 1 0 1 0 0 0 0 0 0 0\n");
    use("hover.treegen", golden_bytes("before.treegen.hex"));
    ASSERT_TRUE(create());
    // Width 1 of a cell of 4 is level 2, which -65536 keeps; limit -6 caps at -7; -1 is level -2.
    EXPECT_TRUE(same_bytes(bytes_of_hex("03 00x3 02 00x3"), adapted().substr(92, 8)));
    EXPECT_TRUE(same_bytes(bytes_of_hex("03 00x3 F9 FFx3"), adapted().substr(152, 8)));
    EXPECT_TRUE(same_bytes(bytes_of_hex("03 00x3 FE FFx3"), adapted().substr(212, 8)));
}

TEST_F(AdaptiveInput, FileIsNotAdaptedOntoItself)
{
    use("hover.treegen-adapted", golden_bytes("before.treegen.hex"));
    EXPECT_FALSE(create());
    EXPECT_EQ(m_error, "treegen file cannot be adapted onto itself");
    EXPECT_TRUE(same_bytes(golden_bytes("before.treegen.hex"), adapted()));
}

TEST_F(AdaptiveInput, FilesLongerThanABlockAreCopiedWhole)
{
    // 20000 points make 480000 bytes and 10000 triangles 890000, both more than a block.
    const std::string domain = golden_bytes("before.treegen.hex").substr(0, 60);
    std::string points = bytes_of_hex("20 4E 00 00");
    for (int i = 0; i < 20000; ++i)
        points += bytes_of_hex(i % 2 == 0 ? "00x24" : "11x24");
    std::string triangles;
    for (int i = 0; i < 10000; ++i)
        triangles += bytes_of_hex(i % 2 == 0 ? "02 00x3 00x85" : "02 00x3 22x85");
    use("hover.treegen", domain + points + bytes_of_hex("10 27 00 00") + triangles);
    labels("");
    ASSERT_TRUE(create());
    EXPECT_TRUE(same_bytes(domain + points + bytes_of_hex("11 27 00 00")
            + bytes_of_hex("03 00x3 09 00x3 00x48 00x4") + triangles,
        adapted()));
}

} // namespace
