// SPDX-License-Identifier: Apache-2.0
#include "geometry/SurfaceOutput.h"
#include "tests/case/FormatPage.h"
#include "tests/geometry/SurfaceSamples.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

// docs/formats/surface-files.md, held against the writers.
namespace {

using Testing::FormatPage;
using Testing::read_file;
using Testing::unquoted;

class SurfacePage : public testing::Test {
protected:
    /// The rows are numbered from 1, and their examples, each ended by a line feed, are the file.
    [[nodiscard]] std::string lines_of(const char* heading) const
    {
        std::string text;
        std::size_t number = 0;
        for (const auto& row : m_page.table(heading)) {
            EXPECT_EQ(row.at(0), std::to_string(++number)) << heading;
            text += unquoted(row.at(2)) + '\n';
        }
        return text;
    }
    /// The same of rows of bytes, which are as many as they say. A text is filled up with blanks.
    [[nodiscard]] std::string bytes_of(const char* heading) const
    {
        std::string bytes;
        std::size_t number = 0;
        for (const auto& row : m_page.table(heading)) {
            EXPECT_EQ(row.at(0), std::to_string(++number)) << heading;
            const std::size_t size = std::stoul(row.at(2));
            const std::string example = unquoted(row.at(3));
            std::string value = row.at(1) == "header" ? example : Testing::from_hex(example);
            if (row.at(1) == "header")
                value.resize(size, ' ');
            EXPECT_EQ(value.size(), size) << heading << ", row " << number;
            bytes += value;
        }
        return bytes;
    }

    const FormatPage m_page { "surface-files.md" };
    const Testing::Surfaces m_both = Testing::triangle_and_square();
    const Testing::Surfaces m_triangle { { Testing::triangle(), Testing::identity() } };
    Testing::TemporaryDirectory m_directory;
    std::string m_path = m_directory.path("skin.stl");
    std::string m_error;
};

TEST_F(SurfacePage, P3DTextsAreThoseOfTheWriters)
{
    ASSERT_TRUE(Tavro::OutputToFile_P3D_ASC_VRK_MZ(m_path, m_both, m_error));
    EXPECT_EQ(read_file(m_path), lines_of("P3D text, a zone for each surface"));
    ASSERT_TRUE(Tavro::OutputToFile_P3D_ASC_VRK_SZ(m_path, m_both, m_error));
    EXPECT_EQ(read_file(m_path), lines_of("P3D text, one zone"));
}

TEST_F(SurfacePage, P3DBytesAreThoseOfTheWriters)
{
    ASSERT_TRUE(Tavro::OutputToFile_P3D_BIN_VRK_MZ(m_path, m_both, m_error));
    EXPECT_EQ(read_file(m_path), bytes_of("P3D binary, a zone for each surface"));
    ASSERT_TRUE(Tavro::OutputToFile_P3D_BIN_VRK_SZ(m_path, m_both, m_error));
    EXPECT_EQ(read_file(m_path), bytes_of("P3D binary, one zone"));
}

TEST_F(SurfacePage, STLIsThatOfTheWriters)
{
    ASSERT_TRUE(Tavro::OutputToFile_STL_ASCII(m_path, m_triangle, m_error));
    EXPECT_EQ(read_file(m_path), m_page.example("STL text"));
    ASSERT_TRUE(Tavro::OutputToFile_STL_Binary(m_path, m_triangle, m_error));
    EXPECT_EQ(read_file(m_path), bytes_of("STL binary"));
}

} // namespace
