// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/BinaryFileIO.h"

#include "tests/support/Files.h"
#include "tests/support/Isolated.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <climits>
#include <cstdint>
#include <fstream>
#include <functional>
#include <iostream>
#include <limits>
#include <string>
#include <type_traits>

namespace {

using Tavro::BinaryFileIO;
using Testing::read_file;
using Testing::run_isolated;
using Testing::write_file;
using namespace std::string_literals;

/// What a program finds at its start, before any test has run.
const struct {
    std::int32_t state = BinaryFileIO::m_state;
    bool little = BinaryFileIO::m_systemLittleEndian;
    std::array<unsigned char, 4> narrow = BinaryFileIO::m_float32Map;
    std::array<unsigned char, 8> wide = BinaryFileIO::m_float64Map;
} kInitial;

class BinaryFile : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(BinaryFileIO::Initialize()); }

    std::string written(const std::function<bool(std::ofstream&)>& write) const
    {
        std::ofstream stream(m_directory.path("out"), std::ios::binary);
        EXPECT_TRUE(write(stream));
        stream.close();
        return read_file(m_directory.path("out"));
    }

    std::ifstream stream_of(const std::string& bytes) const
    {
        write_file(m_directory.path("in"), bytes);
        return std::ifstream(m_directory.path("in"), std::ios::binary);
    }

    /// Both orders, written and read.
    template <typename T>
    void expect_bytes(T value, const std::string& little, const std::string& big) const
    {
        EXPECT_EQ(written([&](auto& file) { return BinaryFileIO::WriteLittleEndian(file, value); }),
            little);
        EXPECT_EQ(
            written([&](auto& file) { return BinaryFileIO::WriteBigEndian(file, value); }), big);
        T found {};
        auto stream = stream_of(little + big);
        EXPECT_TRUE(BinaryFileIO::ReadLittleEndian(stream, found));
        EXPECT_EQ(found, value);
        found = {};
        EXPECT_TRUE(BinaryFileIO::ReadBigEndian(stream, found)); // to the very end is no failure
        EXPECT_EQ(found, value);
        EXPECT_FALSE(BinaryFileIO::ReadLittleEndian(stream, found));
    }

    /// Compares bit by bit, as numbers that are none do not equal themselves.
    template <typename T>
    void expect_ieee_bytes(T value, const std::string& bytes) const
    {
        using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
        EXPECT_EQ(written([&](auto& file) { return BinaryFileIO::WriteIEEE(file, value); }), bytes);
        T found {};
        auto stream = stream_of(bytes);
        EXPECT_TRUE(BinaryFileIO::ReadIEEE(stream, found));
        EXPECT_EQ(std::bit_cast<Bits>(found), std::bit_cast<Bits>(value));
    }

    Testing::TemporaryDirectory m_directory;
};

} // namespace

TEST_F(BinaryFile, AnUnsignedShortHasTwoBytes)
{
    expect_bytes<unsigned short>(0x0102, "\x02\x01", "\x01\x02");
    expect_bytes<unsigned short>(0xFFFE, "\xFE\xFF", "\xFF\xFE");
}

TEST_F(BinaryFile, AnUnsignedIntHasFourBytes)
{
    expect_bytes<unsigned int>(0x01020304, "\x04\x03\x02\x01", "\x01\x02\x03\x04");
    expect_bytes<unsigned int>(UINT_MAX, "\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\xFF");
}

TEST_F(BinaryFile, AnUnsignedLongLongHasEightBytes)
{
    expect_bytes<unsigned long long>(
        0x0102030405060708, "\x08\x07\x06\x05\x04\x03\x02\x01", "\x01\x02\x03\x04\x05\x06\x07\x08");
    expect_bytes<unsigned long long>(1, "\x01\0\0\0\0\0\0\0"s, "\0\0\0\0\0\0\0\x01"s);
}

TEST_F(BinaryFile, AShortHasTwoBytes)
{
    expect_bytes<short>(-2, "\xFE\xFF", "\xFF\xFE");
    expect_bytes<short>(SHRT_MIN, "\x00\x80"s, "\x80\x00"s);
}

TEST_F(BinaryFile, AnIntHasFourBytes)
{
    expect_bytes<int>(-2, "\xFE\xFF\xFF\xFF", "\xFF\xFF\xFF\xFE");
    expect_bytes<int>(INT_MIN, "\0\0\0\x80"s, "\x80\0\0\0"s);
}

TEST_F(BinaryFile, ALongLongHasEightBytes)
{
    expect_bytes<long long>(
        -2, "\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE");
    expect_bytes<long long>(LLONG_MIN, "\0\0\0\0\0\0\0\x80"s, "\x80\0\0\0\0\0\0\0"s);
}

// 1.0f is 0x3F800000 and 259.0f is 0x43818000, least significant byte first.
TEST_F(BinaryFile, AFloatHasItsLeastSignificantByteFirst)
{
    expect_ieee_bytes(1.0F, "\x00\x00\x80\x3F"s);
    expect_ieee_bytes(259.0F, "\x00\x80\x81\x43"s);
}

// 1.0 is 0x3FF0000000000000; 137573565443.0 is 0x4240040302018000.
TEST_F(BinaryFile, ADoubleHasItsLeastSignificantByteFirst)
{
    expect_ieee_bytes(1.0, "\0\0\0\0\0\0\xF0\x3F"s);
    expect_ieee_bytes(-2.0, "\0\0\0\0\0\0\0\xC0"s);
    expect_ieee_bytes(137573565443.0, "\x00\x80\x01\x02\x03\x04\x40\x42"s);
}

TEST_F(BinaryFile, MinusZeroAndInfinitySurvive)
{
    expect_ieee_bytes(-0.0F, "\0\0\0\x80"s);
    expect_ieee_bytes(-0.0, "\0\0\0\0\0\0\0\x80"s);
    expect_ieee_bytes(-std::numeric_limits<float>::infinity(), "\0\0\x80\xFF"s);
    expect_ieee_bytes(std::numeric_limits<double>::infinity(), "\0\0\0\0\0\0\xF0\x7F"s);
    expect_ieee_bytes(std::numeric_limits<double>::denorm_min(), "\x01\0\0\0\0\0\0\0"s);
}

TEST_F(BinaryFile, ThePayloadOfANaNSurvives)
{
    expect_ieee_bytes(std::bit_cast<float>(std::uint32_t { 0xFFC12345 }), "\x45\x23\xC1\xFF");
    expect_ieee_bytes(std::bit_cast<double>(std::uint64_t { 0x7FF8A1B2C3D4E5F6 }),
        "\xF6\xE5\xD4\xC3\xB2\xA1\xF8\x7F");
    // Signalling ones too: no arithmetic happens on the way.
    expect_ieee_bytes(std::bit_cast<float>(std::uint32_t { 0x7FA12345 }), "\x45\x23\xA1\x7F");
    expect_ieee_bytes(std::bit_cast<double>(std::uint64_t { 0x7FF4A1B2C3D4E5F6 }),
        "\xF6\xE5\xD4\xC3\xB2\xA1\xF4\x7F");
}

TEST_F(BinaryFile, SeveralNumbersStandBehindEachOther)
{
    const std::string bytes = written([](auto& file) {
        return BinaryFileIO::WriteBigEndian(file, 1U) && BinaryFileIO::WriteIEEE(file, 1.0F)
            && BinaryFileIO::WriteLittleEndian(file, static_cast<unsigned short>(2));
    });
    EXPECT_EQ(bytes, "\0\0\0\x01\0\0\x80\x3F\x02\0"s);
}

TEST_F(BinaryFile, AReadAtTheEndIsFalseAndLeavesTheValue)
{
    auto stream = stream_of("");
    unsigned int number = 0x0A0B0C0D;
    EXPECT_FALSE(BinaryFileIO::ReadLittleEndian(stream, number));
    EXPECT_EQ(number, 0x0A0B0C0DU);
    double real = 1.5;
    EXPECT_FALSE(BinaryFileIO::ReadIEEE(stream, real));
    EXPECT_EQ(real, 1.5);
}

// Bytes that are there take their places at the low end of the number in memory.
TEST_F(BinaryFile, ATruncatedIntegerIsPartlyFilled)
{
    auto stream = stream_of("\x01\x02");
    unsigned int number = 0xAABBCCDD;
    EXPECT_FALSE(BinaryFileIO::ReadLittleEndian(stream, number));
    EXPECT_EQ(number, 0xAABB0201U);
}

// In memory DD CC BB AA becomes 01 02 BB AA by the read, and AA BB 02 01 by the reversal.
TEST_F(BinaryFile, ATruncatedBigEndianIntegerIsPartlyFilledAndReversed)
{
    auto stream = stream_of("\x01\x02");
    unsigned int number = 0xAABBCCDD;
    EXPECT_FALSE(BinaryFileIO::ReadBigEndian(stream, number));
    EXPECT_EQ(number, 0x0102BBAAU);
}

TEST_F(BinaryFile, ATruncatedRealIsPartlyFilled)
{
    auto stream = stream_of("\x11\x22\x33");
    auto real = std::bit_cast<float>(std::uint32_t { 0x3F800000 });
    EXPECT_FALSE(BinaryFileIO::ReadIEEE(stream, real));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(real), 0x3F332211U);

    auto wide_stream = stream_of("\x11\x22\x33\x44\x55");
    auto wide = std::bit_cast<double>(std::uint64_t { 0x3FF0000000000000 });
    EXPECT_FALSE(BinaryFileIO::ReadIEEE(wide_stream, wide));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(wide), 0x3FF0005544332211U);
}

TEST_F(BinaryFile, AStreamThatIsNotOpenFails)
{
    std::ifstream in(m_directory.path("missing"));
    std::ofstream out(m_directory.path("missing/file"));
    int number = 5;
    float narrow = 5.0F;
    double wide = 5.0;
    EXPECT_FALSE(BinaryFileIO::ReadLittleEndian(in, number));
    EXPECT_FALSE(BinaryFileIO::ReadBigEndian(in, number));
    EXPECT_FALSE(BinaryFileIO::ReadIEEE(in, narrow));
    EXPECT_FALSE(BinaryFileIO::ReadIEEE(in, wide));
    EXPECT_FALSE(BinaryFileIO::WriteLittleEndian(out, number));
    EXPECT_FALSE(BinaryFileIO::WriteBigEndian(out, number));
    EXPECT_FALSE(BinaryFileIO::WriteIEEE(out, narrow));
    EXPECT_FALSE(BinaryFileIO::WriteIEEE(out, wide));
}

TEST_F(BinaryFile, ADeviceThatIsFullFailsWhenItIsTold)
{
    std::ofstream stream("/dev/full", std::ios::binary);
    if (!stream.is_open())
        GTEST_SKIP() << "there is no /dev/full here";
    stream.rdbuf()->pubsetbuf(nullptr, 0);
    const std::string block(1 << 16, 'x'); // more than any buffer of the stream
    stream.write(block.data(), static_cast<std::streamsize>(block.size()));
    EXPECT_FALSE(BinaryFileIO::WriteLittleEndian(stream, 1));
}

TEST_F(BinaryFile, BytesWrittenInTheOtherOrderStayReversedInTheCallersBuffer)
{
    std::array<char, 4> buffer { 1, 2, 3, 4 };
    const std::string bytes = written(
        [&](auto& file) { return BinaryFileIO::WriteIntegerType(file, buffer.data(), 4, false); });
    EXPECT_EQ(bytes, "\x04\x03\x02\x01");
    EXPECT_EQ(buffer, (std::array<char, 4> { 4, 3, 2, 1 }));
}

TEST_F(BinaryFile, BytesWrittenInTheMachinesOrderStayAsTheyAre)
{
    std::array<char, 3> buffer { 1, 2, 3 };
    const std::string bytes = written(
        [&](auto& file) { return BinaryFileIO::WriteIntegerType(file, buffer.data(), 3, true); });
    EXPECT_EQ(bytes, "\x01\x02\x03");
    EXPECT_EQ(buffer, (std::array<char, 3> { 1, 2, 3 }));
}

TEST_F(BinaryFile, BytesReadInTheOtherOrderAreReversed)
{
    std::array<char, 3> buffer {};
    auto stream = stream_of("\x01\x02\x03\x04\x05\x06");
    EXPECT_TRUE(BinaryFileIO::ReadIntegerType(stream, buffer.data(), 3, false));
    EXPECT_EQ(buffer, (std::array<char, 3> { 3, 2, 1 }));
    EXPECT_TRUE(BinaryFileIO::ReadIntegerType(stream, buffer.data(), 3, true));
    EXPECT_EQ(buffer, (std::array<char, 3> { 4, 5, 6 }));
}

TEST(FlipBytes, ReversesInPlace)
{
    std::string bytes = "abcde";
    BinaryFileIO::FlipBytes(bytes.data(), 5);
    EXPECT_EQ(bytes, "edcba");
    BinaryFileIO::FlipBytes(bytes.data(), 2);
    EXPECT_EQ(bytes, "decba");
    BinaryFileIO::FlipBytes(bytes.data(), 1);
    BinaryFileIO::FlipBytes(bytes.data(), 0);
    BinaryFileIO::FlipBytes(bytes.data(), -3);
    EXPECT_EQ(bytes, "decba");
}

namespace {

using Four = std::array<unsigned char, 4>;

bool generate(Four reference, Four actual, Four& map)
{
    return BinaryFileIO::GenerateFloatMap(4, reference.data(), actual.data(), map.data());
}

} // namespace

TEST(FloatMap, HoldsForEachByteItsPlaceInTheReference)
{
    Four map {};
    EXPECT_TRUE(generate({ 10, 11, 12, 13 }, { 12, 10, 13, 11 }, map));
    EXPECT_EQ(map, (Four { 2, 0, 3, 1 }));
}

TEST(FloatMap, TakesTheFirstMatch)
{
    Four map {};
    EXPECT_TRUE(generate({ 7, 9, 7, 9 }, { 9, 7, 9, 7 }, map));
    EXPECT_EQ(map, (Four { 1, 0, 1, 0 }));
}

TEST(FloatMap, AByteThatIsNotFoundFails)
{
    Four map {};
    EXPECT_FALSE(generate({ 1, 2, 3, 4 }, { 1, 2, 3, 5 }, map));
}

TEST(FloatMap, LooksAtNoMoreThanItIsToldTo)
{
    Four reference { 1, 2, 3, 4 };
    Four actual { 2, 1, 9, 9 };
    Four map { 8, 8, 8, 8 };
    EXPECT_TRUE(BinaryFileIO::GenerateFloatMap(2, reference.data(), actual.data(), map.data()));
    EXPECT_EQ(map, (Four { 1, 0, 8, 8 }));
    actual = { 3, 1, 9, 9 }; // the 3 lies behind the first two
    EXPECT_FALSE(BinaryFileIO::GenerateFloatMap(2, reference.data(), actual.data(), map.data()));
    EXPECT_TRUE(BinaryFileIO::GenerateFloatMap(0, reference.data(), actual.data(), map.data()));
}

TEST(BinaryFileState, StartsUnexaminedWithIdentityMaps)
{
    EXPECT_EQ(kInitial.state, 0);
    EXPECT_TRUE(kInitial.little);
    EXPECT_EQ(kInitial.narrow, (std::array<unsigned char, 4> { 0, 1, 2, 3 }));
    EXPECT_EQ(kInitial.wide, (std::array<unsigned char, 8> { 0, 1, 2, 3, 4, 5, 6, 7 }));
    EXPECT_TRUE((std::is_same_v<decltype(BinaryFileIO::m_state), std::int32_t>));
}

TEST(BinaryFileState, InitializeMakesItReady)
{
    const auto outcome = run_isolated([] {
        std::cout << BinaryFileIO::Initialize() << BinaryFileIO::m_state
                  << BinaryFileIO::Initialize() << BinaryFileIO::m_systemLittleEndian << " ";
        for (const int place : BinaryFileIO::m_float32Map)
            std::cout << place;
        std::cout << " ";
        for (const int place : BinaryFileIO::m_float64Map)
            std::cout << place;
    });
    EXPECT_EQ(outcome.out, "1111 0123 01234567");
}

namespace {

/// Calls every reading and writing operation with files at hand; prints those that say true, what
/// became of the values, where the reading stands and what was written.
void try_everything(const std::string& in, const std::string& out)
{
    std::ifstream reading(in, std::ios::binary);
    std::ofstream writing(out, std::ios::binary);
    std::array<char, 2> buffer { 'a', 'b' };
    float narrow = 1.0F;
    double wide = 2.0;
    const auto with_integer = [&](auto number) {
        std::cout << BinaryFileIO::ReadLittleEndian(reading, number)
                  << BinaryFileIO::ReadBigEndian(reading, number)
                  << BinaryFileIO::WriteLittleEndian(writing, number)
                  << BinaryFileIO::WriteBigEndian(writing, number) << number << " ";
    };
    with_integer(static_cast<unsigned short>(1));
    with_integer(2U);
    with_integer(3ULL);
    with_integer(short { 4 });
    with_integer(5);
    with_integer(6LL);
    std::cout << BinaryFileIO::ReadIEEE(reading, narrow) << BinaryFileIO::ReadIEEE(reading, wide)
              << BinaryFileIO::WriteIEEE(writing, narrow) << BinaryFileIO::WriteIEEE(writing, wide)
              << narrow << wide << " "
              << BinaryFileIO::ReadIntegerType(reading, buffer.data(), 2, false)
              << BinaryFileIO::WriteIntegerType(writing, buffer.data(), 2, false) << buffer[0]
              << buffer[1] << " " << reading.good() << reading.tellg() << writing.good()
              << writing.tellp();
}

constexpr const char* kNothingTouched = "00001 00002 00003 00004 00005 00006 000012 00ab 1010";

std::string everything_in_state(std::int32_t state)
{
    const Testing::TemporaryDirectory directory;
    write_file(directory.path("in"), std::string(200, 'x'));
    const auto outcome = run_isolated([&] {
        BinaryFileIO::m_state = state;
        try_everything(directory.path("in"), directory.path("out"));
    });
    EXPECT_EQ(read_file(directory.path("out")), "");
    return outcome.out;
}

} // namespace

TEST(BinaryFileState, BeforeInitializeNothingIsReadOrWritten)
{
    EXPECT_EQ(everything_in_state(0), kNothingTouched);
}

TEST(BinaryFileState, AfterAFailedInitializeNothingIsReadOrWritten)
{
    EXPECT_EQ(everything_in_state(2), kNothingTouched);
    EXPECT_EQ(everything_in_state(3), kNothingTouched);
}

TEST(BinaryFileState, AFailureIsRemembered)
{
    const auto outcome = run_isolated([] {
        for (const int state : { 2, 3 }) {
            BinaryFileIO::m_state = state;
            std::cout << BinaryFileIO::Initialize() << BinaryFileIO::m_state << " ";
        }
    });
    EXPECT_EQ(outcome.out, "02 03 ");
}

TEST(BinaryFileState, EachFailureHasItsWords)
{
    const auto words = [](std::int32_t state) {
        return run_isolated([=] {
            BinaryFileIO::m_state = state;
            std::cout << BinaryFileIO::InitializeErrorText();
        }).out;
    };
    EXPECT_EQ(words(2), "Could not determine the system's endianess.  Cannot read binary files.");
    EXPECT_EQ(words(3),
        "Could not determine the systems's floating point format.  Cannot read binary files.");
    const char* const other
        = "Unknown error determining the system's memory format.  Cannot read binary files.";
    EXPECT_EQ(words(0), other);
    EXPECT_EQ(words(1), other);
    EXPECT_EQ(words(4), other);
    EXPECT_EQ(words(-1), other);
}

namespace {

std::string written_when(const std::function<void()>& prepare,
    const std::function<void(std::ofstream&, std::ifstream&)>& body, const std::string& input)
{
    const Testing::TemporaryDirectory directory;
    write_file(directory.path("in"), input);
    const auto outcome = run_isolated([&] {
        if (!BinaryFileIO::Initialize())
            return;
        prepare();
        std::ofstream writing(directory.path("out"), std::ios::binary);
        std::ifstream reading(directory.path("in"), std::ios::binary);
        body(writing, reading);
    });
    EXPECT_TRUE(outcome.exited && outcome.status == 0);
    return read_file(directory.path("out")) + outcome.out;
}

} // namespace

// The class serves a machine of the other order through its flag: now big-endian files are left
// alone, and little-endian ones reversed.
TEST(BinaryFileState, TheFlagOfTheMachineDecidesWhatIsReversed)
{
    EXPECT_EQ(written_when([] { BinaryFileIO::m_systemLittleEndian = false; },
                  [](auto& writing, auto& reading) {
                      unsigned short number = 0;
                      std::cout << BinaryFileIO::WriteBigEndian(writing, 0x01020304U)
                                << BinaryFileIO::WriteLittleEndian(writing, 0x01020304U)
                                << BinaryFileIO::ReadBigEndian(reading, number) << number
                                << BinaryFileIO::ReadLittleEndian(reading, number) << number;
                  },
                  "\x01\x02\x01\x02"),
        "\x04\x03\x02\x01\x01\x02\x03\x04"
        "1115131258"); // 0x0201 is 513, 0x0102 is 258
}

// Byte i of the file is byte map[i] of the value.
TEST(BinaryFileState, TheMapsDecideWhereBytesOfRealsStand)
{
    EXPECT_EQ(written_when(
                  [] {
                      BinaryFileIO::m_float32Map = { 3, 2, 0, 1 };
                      BinaryFileIO::m_float64Map = { 1, 2, 3, 4, 5, 6, 7, 0 };
                  },
                  [](auto& writing, auto& reading) {
                      float narrow = 0.0F;
                      double wide = 0.0;
                      std::cout << BinaryFileIO::WriteIEEE(
                          writing, std::bit_cast<float>(std::uint32_t { 0x44332211 }))
                                << BinaryFileIO::WriteIEEE(writing,
                                       std::bit_cast<double>(std::uint64_t { 0x8877665544332211 }))
                                << BinaryFileIO::ReadIEEE(reading, narrow) << std::hex
                                << std::bit_cast<std::uint32_t>(narrow)
                                << BinaryFileIO::ReadIEEE(reading, wide)
                                << std::bit_cast<std::uint64_t>(wide);
                  },
                  "\x01\x02\x03\x04\x11\x12\x13\x14\x15\x16\x17\x18"),
        "\x44\x33\x11\x22"
        "\x22\x33\x44\x55\x66\x77\x88\x11"
        "111" // three times true
        "1020403" // memory 03 04 02 01
        "1" // and once more
        "1716151413121118");
}
