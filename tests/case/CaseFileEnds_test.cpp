// SPDX-License-Identifier: Apache-2.0
#include "case/CaseFile.h"
#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/case/HexText.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <sstream>
#include <thread>

namespace {

using Testing::blank_case;
using Testing::bytes_of_hex;
using Testing::kAtCompletionPath;
using Testing::read_file;
using Testing::same_bytes;
using Testing::smallest_case;
using Testing::smallest_case_with;
using Testing::TemporaryDirectory;
using Testing::write_file;
using VRK::ControllerInput;

TEST(CaseFileOnDisk, WriteReplacesWhatWasThereAndReadReadsIt)
{
    const TemporaryDirectory directory;
    const std::string path = directory.path("case.bin");
    write_file(path, std::string(5000, 'x'));
    ASSERT_TRUE(blank_case().Write(path));
    EXPECT_TRUE(same_bytes(smallest_case(), read_file(path)));
    ControllerInput input;
    EXPECT_TRUE(input.Read(path));
}

TEST(CaseFileOnDisk, FileThatCannotBeOpenedLeavesTheRecordUntouched)
{
    const TemporaryDirectory directory;
    ControllerInput input;
    input.m_strCaseName = "before";
    input.m_vecRotors.resize(1);
    EXPECT_FALSE(input.Read(directory.path("missing.bin")));
    EXPECT_EQ(input.m_strCaseName, "before");
    EXPECT_EQ(input.m_vecRotors.size(), 1U);
}

TEST(CaseFileOnDisk, DirectoryIsNoCaseFile)
{
    const TemporaryDirectory directory;
    ControllerInput input;
    EXPECT_FALSE(input.Read(directory.path()));
    EXPECT_FALSE(blank_case().Write(directory.path()));
}

TEST(CaseFileOnDisk, WritingIntoAMissingDirectoryFails)
{
    const TemporaryDirectory directory;
    EXPECT_FALSE(blank_case().Write(directory.path("missing/case.bin")));
}

TEST(CaseFileOnDisk, FullDiskFailsEvenIfTheCaseFitsTheBuffer)
{
    if (!Testing::file_exists("/dev/full"))
        GTEST_SKIP() << "no /dev/full here";
    EXPECT_FALSE(blank_case().Write(Tavro::FilePath("/dev/full")));
}

TEST(CaseFileOnDisk, CaseComesThroughAPipeToo)
{
    const TemporaryDirectory directory;
    const std::string path = directory.path("pipe");
    Testing::make_pipe(path);
    // More than one piece of 64 KiB: 3000 points, and a text of 100000 bytes.
    ControllerInput original = blank_case();
    original.m_grid.m_vecPoints.assign(3000, Tavro::Vector<double, 3> { 1.0, 2.0, 3.0 });
    original.m_strMomentGroups.assign(100000, 'm');
    std::thread writer([&] { write_file(path, Testing::written_bytes(original)); });
    ControllerInput input;
    EXPECT_TRUE(input.Read(path));
    writer.join();
    EXPECT_TRUE(same_bytes(Testing::written_bytes(original), Testing::written_bytes(input)));
}

TEST(CompletionPath, ThousandBytesAreReadAndWritten)
{
    const std::string path(1000, 'p');
    const auto bytes = smallest_case_with(kAtCompletionPath, 4, bytes_of_hex("E8 03 00 00") + path);
    ControllerInput input;
    ASSERT_TRUE(Testing::read_bytes(bytes, input));
    EXPECT_EQ(input.m_fpCompletionFile.Get(), path);
    EXPECT_TRUE(same_bytes(bytes, Testing::written_bytes(input)));
}

TEST(CompletionPath, OneByteMoreIsRefusedAfterAllOtherFieldsWereRead)
{
    auto bytes = smallest_case_with(
        kAtCompletionPath, 4, bytes_of_hex("E9 03 00 00") + std::string(1001, 'p'));
    bytes.replace(Testing::kAtAdaptBoxes + 4, 4, bytes_of_hex("01 00x3 00x6 F0 3F 00x40"));
    ControllerInput input;
    input.m_fpCompletionFile.Set("before");
    EXPECT_FALSE(Testing::read_bytes(bytes, input));
    EXPECT_EQ(input.m_fpCompletionFile.Get(), "before");
    ASSERT_EQ(input.m_adapt.m_vecSecondAdaptBoxes.size(), 1U);
    EXPECT_EQ(input.m_adapt.m_vecSecondAdaptBoxes[0].m_vMin[0], 1.0);
}

TEST(CompletionPath, OneByteMoreIsNotWrittenAndTheFileLacksItsLastField)
{
    const TemporaryDirectory directory;
    ControllerInput input = blank_case();
    input.m_fpCompletionFile.Set(std::string(1001, 'p'));
    EXPECT_FALSE(input.Write(directory.path("case.bin")));
    EXPECT_TRUE(same_bytes(
        smallest_case().substr(0, kAtCompletionPath), read_file(directory.path("case.bin"))));
}

TEST(CompletionPath, PathThatCollapsesToNothingIsRefused)
{
    // "a/.." names nothing that a path can hold.
    const auto path = bytes_of_hex("04 00x3 61 2F 2E 2E");
    ControllerInput input;
    EXPECT_FALSE(Testing::read_bytes(smallest_case_with(kAtCompletionPath, 4, path), input));
    EXPECT_FALSE(Testing::read_bytes(smallest_case_with(Testing::kAtViscPath, 4, path), input));
}

} // namespace
