// SPDX-License-Identifier: Apache-2.0
#include "geometry/SurfaceOutput.h"

#include "tavrobase/BinaryFileIO.h"
#include "tests/geometry/SurfaceSamples.h"
#include "tests/support/Files.h"
#include "tests/support/Isolated.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include <sys/resource.h>

namespace {

using Testing::read_file;

using Writer = bool (*)(const Tavro::FilePath&, const Testing::Surfaces&, std::string& error);

struct NamedWriter {
    const char* m_name;
    Writer m_write;
};

const NamedWriter kP3DTextWriters[] {
    { "multiple zones in text", Tavro::OutputToFile_P3D_ASC_VRK_MZ<double> },
    { "a single zone in text", Tavro::OutputToFile_P3D_ASC_VRK_SZ<double> },
};
const NamedWriter kP3DBinaryWriters[] {
    { "multiple zones in binary", Tavro::OutputToFile_P3D_BIN_VRK_MZ<double> },
    { "a single zone in binary", Tavro::OutputToFile_P3D_BIN_VRK_SZ<double> },
};
const NamedWriter kStlText { "STL in text", Tavro::OutputToFile_STL_ASCII<double> };
const NamedWriter kStlBinary { "STL in binary", Tavro::OutputToFile_STL_Binary<double> };

std::string outcome_of(const NamedWriter& writer, const std::string& path)
{
    std::string error = "as it was";
    return writer.m_write(path, Testing::triangle_and_square(), error) ? "written" : error;
}

/// What a writer says when no file may grow beyond so many bytes.
std::string outcome_with_limit(const NamedWriter& writer, const std::string& path, rlim_t bytes)
{
    const auto outcome = Testing::run_isolated([&] {
        (void)std::signal(SIGXFSZ, SIG_IGN); // a write is to fail instead; nothing was set before
        rlimit former {};
        if (::getrlimit(RLIMIT_FSIZE, &former) != 0)
            throw std::runtime_error("no limits");
        const rlimit limit { bytes, former.rlim_max };
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0)
            throw std::runtime_error("no limits");
        const std::string said = outcome_of(writer, path);
        if (::setrlimit(RLIMIT_FSIZE, &former) != 0)
            throw std::runtime_error("no limits");
        std::cout << said;
    });
    return outcome.out + outcome.err;
}

class SurfaceOutputFailure : public testing::Test {
protected:
    void expect_unopened(const NamedWriter& writer)
    {
        SCOPED_TRACE(writer.m_name);
        EXPECT_EQ(outcome_of(writer, m_directory.path("missing/skin.any")), "Could not open file.");
        EXPECT_EQ(outcome_of(writer, m_directory.path()), "Could not open file.");
        EXPECT_EQ(outcome_of(writer, "/"), "Could not open file.");
    }
    void expect_unwritten(const NamedWriter& writer)
    {
        SCOPED_TRACE(writer.m_name);
        EXPECT_EQ(outcome_of(writer, m_path), "written");
        const std::string whole = read_file(m_path);
        for (const std::size_t limit : { std::size_t { 0 }, std::size_t { 7 }, whole.size() - 1 }) {
            EXPECT_EQ(outcome_with_limit(writer, m_path, limit), "Could not write file.");
            EXPECT_EQ(read_file(m_path), whole.substr(0, limit)) << "what was written must stay";
        }
    }
    void expect_machine_text(const NamedWriter& writer, int state, const std::string& text)
    {
        SCOPED_TRACE(writer.m_name);
        Testing::write_file(m_path, "precious");
        const auto outcome = Testing::run_isolated([&] {
            Tavro::BinaryFileIO::m_state = state;
            std::cout << outcome_of(writer, m_path);
        });
        EXPECT_EQ(outcome.out, text);
        EXPECT_EQ(read_file(m_path), "precious");
    }

    Testing::TemporaryDirectory m_directory;
    std::string m_path = m_directory.path("skin.any");
};

TEST_F(SurfaceOutputFailure, AFileThatCannotBeOpenedIsReportedByEveryWriter)
{
    for (const NamedWriter& writer : kP3DTextWriters)
        expect_unopened(writer);
    for (const NamedWriter& writer : kP3DBinaryWriters)
        expect_unopened(writer);
    expect_unopened(kStlText);
    expect_unopened(kStlBinary);
}

TEST_F(SurfaceOutputFailure, ADiskThatTakesOnlyPartOfP3DTextIsReported)
{
    for (const NamedWriter& writer : kP3DTextWriters)
        expect_unwritten(writer);
}

TEST_F(SurfaceOutputFailure, ADiskThatTakesOnlyPartOfP3DBinaryIsReported)
{
    for (const NamedWriter& writer : kP3DBinaryWriters)
        expect_unwritten(writer);
}

TEST_F(SurfaceOutputFailure, AFullDeviceIsReported)
{
    if (!std::ofstream("/dev/full"))
        GTEST_SKIP() << "this machine has no full device";
    for (const NamedWriter& writer : kP3DTextWriters)
        EXPECT_EQ(outcome_of(writer, "/dev/full"), "Could not write file.");
    for (const NamedWriter& writer : kP3DBinaryWriters)
        EXPECT_EQ(outcome_of(writer, "/dev/full"), "Could not write file.");
    EXPECT_EQ(outcome_of(kStlText, "/dev/full"), "Unable to write to file.");
    EXPECT_EQ(outcome_of(kStlBinary, "/dev/full"), "Unable to write to file.");
}

TEST_F(SurfaceOutputFailure, AnStlHeaderThatDoesNotFitIsReported)
{
    // Headers: "solid skin" and a line end, 11 bytes; 80 bytes and a count of 4.
    EXPECT_EQ(outcome_with_limit(kStlText, m_path, 10), "Unable to write to file.");
    EXPECT_EQ(read_file(m_path), "solid skin");
    EXPECT_EQ(outcome_with_limit(kStlBinary, m_path, 83), "Unable to write to file.");
    EXPECT_EQ(read_file(m_path).size(), 83U);
}

TEST_F(SurfaceOutputFailure, StlFacetsThatDoNotFitAreReported)
{
    EXPECT_EQ(outcome_with_limit(kStlText, m_path, 11), "Unable to write facets to file.");
    EXPECT_EQ(read_file(m_path), "solid skin\n");
    EXPECT_EQ(outcome_with_limit(kStlText, m_path, 17), "Unable to write facets to file.");
    EXPECT_EQ(read_file(m_path), "solid skin\nfacet ");
    EXPECT_EQ(outcome_with_limit(kStlBinary, m_path, 84), "Unable to write facets to file.");
    EXPECT_EQ(read_file(m_path).size(), 84U);
    EXPECT_EQ(outcome_with_limit(kStlBinary, m_path, 233), "Unable to write facets to file.");
    EXPECT_EQ(read_file(m_path).size(), 233U);
}

TEST_F(SurfaceOutputFailure, ManyStlFacetsEndAtTheFirstThatFails)
{
    Testing::SurfaceRef surface = Testing::triangle();
    for (int i = 0; i < 5000; ++i)
        surface->AddFacet(0, 1, 2);
    const auto outcome = Testing::run_isolated([&] {
        (void)std::signal(SIGXFSZ, SIG_IGN); // a write is to fail instead; nothing was set before
        const rlimit limit { 100000, RLIM_INFINITY };
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0)
            return;
        std::string error;
        (void)Tavro::OutputToFile_STL_ASCII( // the text tells
            m_path, { { surface, Testing::identity() } }, error);
        std::cout << error;
    });
    EXPECT_EQ(outcome.out, "Unable to write facets to file.");
    EXPECT_EQ(read_file(m_path).size(), 100000U);
}

TEST_F(SurfaceOutputFailure, AFacetWithAVertexThatDoesNotExistCannotBeWrittenAsStl)
{
    const auto surface = Testing::triangle();
    surface->AddFacet(0, 1, 3);
    const Testing::Surfaces surfaces { { surface, Testing::identity() } };
    std::string error;
    EXPECT_FALSE(Tavro::OutputToFile_STL_ASCII(m_path, surfaces, error));
    EXPECT_EQ(error, "Unable to write facets to file.");
    error.clear();
    EXPECT_FALSE(Tavro::OutputToFile_STL_Binary(m_path, surfaces, error));
    EXPECT_EQ(error, "Unable to write facets to file.");
}

TEST_F(SurfaceOutputFailure, AnUnknownByteOrderStopsBinaryWritersBeforeTheFile)
{
    const std::string text
        = "Could not determine the system's endianess.  Cannot read binary files.";
    expect_machine_text(kP3DBinaryWriters[0], 2, text);
    expect_machine_text(kP3DBinaryWriters[1], 2, text);
    expect_machine_text(kStlBinary, 2, text);
}

TEST_F(SurfaceOutputFailure, AnUnknownFloatFormatStopsBinaryWritersBeforeTheFile)
{
    const std::string text
        = "Could not determine the systems's floating point format.  Cannot read binary files.";
    expect_machine_text(kP3DBinaryWriters[0], 3, text);
    expect_machine_text(kP3DBinaryWriters[1], 3, text);
    expect_machine_text(kStlBinary, 3, text);
}

TEST_F(SurfaceOutputFailure, AnyOtherFailureToKnowTheMachineStopsBinaryWritersBeforeTheFile)
{
    const std::string text
        = "Unknown error determining the system's memory format.  Cannot read binary files.";
    expect_machine_text(kP3DBinaryWriters[0], 4, text);
    expect_machine_text(kP3DBinaryWriters[1], 4, text);
    expect_machine_text(kStlBinary, 4, text);
}

TEST_F(SurfaceOutputFailure, TextWritersDoNotCareAboutTheMachine)
{
    const auto outcome = Testing::run_isolated([&] {
        Tavro::BinaryFileIO::m_state = 2;
        std::cout << outcome_of(kP3DTextWriters[0], m_path) << outcome_of(kStlText, m_path);
    });
    EXPECT_EQ(outcome.out, "writtenwritten");
}

} // namespace
