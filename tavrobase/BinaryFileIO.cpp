// SPDX-License-Identifier: Apache-2.0
#include "tavrobase/BinaryFileIO.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace Tavro {

std::int32_t BinaryFileIO::m_state = 0;
bool BinaryFileIO::m_systemLittleEndian = true;
std::array<unsigned char, 4> BinaryFileIO::m_float32Map { 0, 1, 2, 3 };
std::array<unsigned char, 8> BinaryFileIO::m_float64Map { 0, 1, 2, 3, 4, 5, 6, 7 };

namespace {

enum State : std::int32_t { NotExamined = 0, Ready = 1, ByteOrderUnknown = 2, FloatUnknown = 3 };

static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

// Numbers whose bytes all differ, so that a place can be told by its byte; in file order.
constexpr float kFloatProbe = 259.0F;
constexpr std::array<unsigned char, 4> kFloatProbeBytes { 0x00, 0x80, 0x81, 0x43 };
constexpr double kDoubleProbe = 137573565443.0;
constexpr std::array<unsigned char, 8> kDoubleProbeBytes { 0x00, 0x80, 0x01, 0x02, 0x03, 0x04, 0x40,
    0x42 };

template <typename T>
using Bytes = std::array<unsigned char, sizeof(T)>;

template <typename T>
bool map_of(T probe, Bytes<T> reference, Bytes<T>& map)
{
    auto actual = std::bit_cast<Bytes<T>>(probe);
    return BinaryFileIO::GenerateFloatMap(
        static_cast<unsigned char>(sizeof(T)), reference.data(), actual.data(), map.data());
}

template <typename T>
bool read_integer(std::ifstream& stream, T& value, bool little)
{
    return BinaryFileIO::ReadIntegerType(
        stream, reinterpret_cast<char*>(&value), sizeof value, little);
}

template <typename T>
bool write_integer(std::ofstream& stream, T value, bool little)
{
    return BinaryFileIO::WriteIntegerType(
        stream, reinterpret_cast<char*>(&value), sizeof value, little);
}

/// What was read of a value that the file cuts short is put in its place all the same.
template <typename T>
bool read_ieee(std::ifstream& stream, T& value, const Bytes<T>& map)
{
    if (BinaryFileIO::m_state != Ready)
        return false;
    Bytes<T> file {};
    stream.read(reinterpret_cast<char*>(file.data()), sizeof file);
    auto memory = std::bit_cast<Bytes<T>>(value);
    for (std::size_t i = 0; i < static_cast<std::size_t>(stream.gcount()); ++i)
        memory[map[i]] = file[i];
    value = std::bit_cast<T>(memory);
    return stream.good();
}

template <typename T>
bool write_ieee(std::ofstream& stream, T value, const Bytes<T>& map)
{
    if (BinaryFileIO::m_state != Ready)
        return false;
    const auto memory = std::bit_cast<Bytes<T>>(value);
    Bytes<T> file {};
    for (std::size_t i = 0; i < file.size(); ++i)
        file[i] = memory[map[i]];
    stream.write(reinterpret_cast<const char*>(file.data()), sizeof file);
    return stream.good();
}

} // namespace

bool BinaryFileIO::Initialize()
{
    if (m_state != NotExamined)
        return m_state == Ready;

    const auto order = std::bit_cast<Bytes<std::uint32_t>>(std::uint32_t { 0x00010203 });
    if (order[1] != 2 || order[2] != 1 || order[3] != 0) {
        m_state = ByteOrderUnknown;
        return false;
    }
    m_systemLittleEndian = true;

    if (!map_of(kFloatProbe, kFloatProbeBytes, m_float32Map)
        || !map_of(kDoubleProbe, kDoubleProbeBytes, m_float64Map)) {
        m_state = FloatUnknown;
        return false;
    }
    m_state = Ready;
    return true;
}

std::string BinaryFileIO::InitializeErrorText()
{
    switch (m_state) {
    case ByteOrderUnknown:
        return "Could not determine the system's endianess.  Cannot read binary files.";
    case FloatUnknown:
        return "Could not determine the systems's floating point format.  Cannot read binary "
               "files.";
    default:
        return "Unknown error determining the system's memory format.  Cannot read binary files.";
    }
}

bool BinaryFileIO::GenerateFloatMap(
    unsigned char n, unsigned char* reference, unsigned char* actual, unsigned char* map)
{
    for (unsigned char i = 0; i < n; ++i) {
        const unsigned char* found = std::find(reference, reference + n, actual[i]);
        if (found == reference + n)
            return false;
        map[i] = static_cast<unsigned char>(found - reference);
    }
    return true;
}

void BinaryFileIO::FlipBytes(char* bytes, long long size)
{
    if (size > 0)
        std::reverse(bytes, bytes + size);
}

bool BinaryFileIO::ReadIntegerType(
    std::ifstream& stream, char* bytes, long long size, bool fileLittleEndian)
{
    if (m_state != Ready)
        return false;
    stream.read(bytes, size);
    if (fileLittleEndian != m_systemLittleEndian)
        FlipBytes(bytes, size);
    return stream.good();
}

bool BinaryFileIO::WriteIntegerType(
    std::ofstream& stream, char* bytes, long long size, bool fileLittleEndian)
{
    if (m_state != Ready)
        return false;
    if (fileLittleEndian != m_systemLittleEndian)
        FlipBytes(bytes, size);
    stream.write(bytes, size);
    return stream.good();
}

// The same four operations for each of the six integer types of the files.
// NOLINTBEGIN(bugprone-macro-parentheses): a type is no expression
#define TAVRO_INTEGER_TYPE(T)                                                                      \
    bool BinaryFileIO::ReadLittleEndian(std::ifstream& stream, T& value)                           \
    {                                                                                              \
        return read_integer(stream, value, true);                                                  \
    }                                                                                              \
    bool BinaryFileIO::ReadBigEndian(std::ifstream& stream, T& value)                              \
    {                                                                                              \
        return read_integer(stream, value, false);                                                 \
    }                                                                                              \
    bool BinaryFileIO::WriteLittleEndian(std::ofstream& stream, T value)                           \
    {                                                                                              \
        return write_integer(stream, value, true);                                                 \
    }                                                                                              \
    bool BinaryFileIO::WriteBigEndian(std::ofstream& stream, T value)                              \
    {                                                                                              \
        return write_integer(stream, value, false);                                                \
    }

TAVRO_INTEGER_TYPE(unsigned short)
TAVRO_INTEGER_TYPE(unsigned int)
TAVRO_INTEGER_TYPE(unsigned long long)
TAVRO_INTEGER_TYPE(short)
TAVRO_INTEGER_TYPE(int)
TAVRO_INTEGER_TYPE(long long)

#undef TAVRO_INTEGER_TYPE
// NOLINTEND(bugprone-macro-parentheses)

bool BinaryFileIO::ReadIEEE(std::ifstream& stream, float& value)
{
    return read_ieee(stream, value, m_float32Map);
}

bool BinaryFileIO::ReadIEEE(std::ifstream& stream, double& value)
{
    return read_ieee(stream, value, m_float64Map);
}

bool BinaryFileIO::WriteIEEE(std::ofstream& stream, float value)
{
    return write_ieee(stream, value, m_float32Map);
}

bool BinaryFileIO::WriteIEEE(std::ofstream& stream, double value)
{
    return write_ieee(stream, value, m_float64Map);
}

} // namespace Tavro
