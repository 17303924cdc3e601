// SPDX-License-Identifier: Apache-2.0
#include "controller/RestartFiles.h"

#include "tavrobase/Exception.h"
#include "tests/controller/unit/RunFixture.h"

#include <filesystem>

using namespace Testing;

namespace {

class RestartFiles : public RunFixture {
protected:
    /// Step of a restart file of these bytes.
    [[nodiscard]] std::optional<std::uint32_t> step_of(const std::string& bytes) const
    {
        write_file(at("case.Rst"), bytes);
        return read_restart_step(at("case.Rst"));
    }
};

const std::string kSevenWords(28, '\x7f');

} // namespace

// 78 56 34 12, little-endian
TEST_F(RestartFiles, EighthWordIsTheStep)
{
    EXPECT_EQ(step_of(kSevenWords + "\x78\x56\x34\x12"), 0x12345678U);
    EXPECT_EQ(step_of(kSevenWords + "\xff\xff\xff\xff more"), 4294967295U);
    EXPECT_EQ(step_of(kSevenWords + std::string(4, '\0')), 0U);
}

TEST_F(RestartFiles, ShorterFileHasNoStep)
{
    EXPECT_EQ(step_of(""), std::nullopt);
    EXPECT_EQ(step_of(kSevenWords), std::nullopt);
    EXPECT_EQ(step_of(kSevenWords + "\x78\x56\x34"), std::nullopt);
}

TEST_F(RestartFiles, MissingFileHasNoStep)
{
    EXPECT_EQ(read_restart_step(at("gone.Rst")), std::nullopt);
    EXPECT_EQ(read_restart_step(""), std::nullopt);
}

TEST_F(RestartFiles, DirectoryHasNoStep)
{
    EXPECT_EQ(read_restart_step(m_root.path()), std::nullopt);
}

TEST_F(RestartFiles, OldStateIsSavedUnderThreeNames)
{
    make_tree(m_root.path(),
        { "my.Rst", "Restarts/case.Rst", "Solver_Input/ParmFlw.h", "Grid_Output/GeomBC.dat" });
    save_old_state(at("my.Rst"), "case");
    EXPECT_EQ(tree_of(m_root.path()),
        "Grid_Output/ Grid_Output/GeomBC.dat Grid_Output/GeomBC.old.dat Restarts/ "
        "Restarts/case.Rst Restarts/case.old.Rst Solver_Input/ Solver_Input/ParmFlw.h "
        "Solver_Input/ParmFlw.old.h my.Rst");
    EXPECT_EQ(read_file(at("Restarts/case.old.Rst")), "my.Rst");
    EXPECT_EQ(read_file(at("Solver_Input/ParmFlw.old.h")), "Solver_Input/ParmFlw.h");
    EXPECT_EQ(read_file(at("Grid_Output/GeomBC.old.dat")), "Grid_Output/GeomBC.dat");
}

TEST_F(RestartFiles, OldStateTakesThePlaceOfAnOlderOne)
{
    make_tree(m_root.path(),
        { "Restarts/case.Rst", "Restarts/case.old.Rst", "Solver_Input/ParmFlw.h",
            "Solver_Input/ParmFlw.old.h", "Grid_Output/GeomBC.dat", "Grid_Output/GeomBC.old.dat" });
    write_file(at("Restarts/case.old.Rst"), std::string(1000, 'x'));
    save_old_state(at("Restarts/case.Rst"), "case");
    EXPECT_EQ(read_file(at("Restarts/case.old.Rst")), "Restarts/case.Rst");
    EXPECT_EQ(read_file(at("Solver_Input/ParmFlw.old.h")), "Solver_Input/ParmFlw.h");
    EXPECT_EQ(read_file(at("Grid_Output/GeomBC.old.dat")), "Grid_Output/GeomBC.dat");
}

TEST_F(RestartFiles, EachMissingFileRaisesAnExceptionAfterWhatWentBeforeIt)
{
    for (const std::string missing :
        { "Restarts/case.Rst", "Solver_Input/ParmFlw.h", "Grid_Output/GeomBC.dat" }) {
        make_tree(m_root.path(),
            { "Restarts/case.Rst", "Solver_Input/ParmFlw.h", "Grid_Output/GeomBC.dat" });
        std::filesystem::remove(at(missing));
        EXPECT_THROW(save_old_state(at("Restarts/case.Rst"), "case"), Tavro::BadParameter)
            << missing;
    }
    EXPECT_TRUE(file_exists(at("Restarts/case.old.Rst")));
    EXPECT_TRUE(file_exists(at("Solver_Input/ParmFlw.old.h")));
    EXPECT_FALSE(file_exists(at("Grid_Output/GeomBC.old.dat")));
}

TEST_F(RestartFiles, CopyThatFailsDoesNotEndTheRun)
{
    make_tree(m_root.path(),
        { "my.Rst", "Restarts/case.old.Rst/", "Solver_Input/ParmFlw.h", "Grid_Output/GeomBC.dat" });
    save_old_state(at("my.Rst"), "case");
    EXPECT_TRUE(file_exists(at("Grid_Output/GeomBC.old.dat")));
}
