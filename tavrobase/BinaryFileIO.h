// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <fstream>
#include <string>

namespace Tavro {

/// Numbers in binary files in a stated byte order, whatever the machine's; floating-point numbers
/// in IEEE 754 form with the least significant byte first.
///
/// Every read and write is false, and touches nothing, until `Initialize` has looked at the
/// machine; afterwards it is true if the stream is clean.  Threads: `Initialize` on the main
/// thread.
class BinaryFileIO {
public:
    /// Examines the machine once and remembers the outcome.
    [[nodiscard]] static bool Initialize();
    /// What a caller says after a failed `Initialize`; the same words serve readers and writers.
    [[nodiscard]] static std::string InitializeErrorText();

    /// For each i below n: `map[i]` is the first place of `actual[i]` in `reference`. False if a
    /// byte is not found.
    [[nodiscard]] static bool GenerateFloatMap(
        unsigned char n, unsigned char* reference, unsigned char* actual, unsigned char* map);

    /// Reverses bytes in place.
    static void FlipBytes(char* bytes, long long size);

    [[nodiscard]] static bool ReadIntegerType(
        std::ifstream& stream, char* bytes, long long size, bool fileLittleEndian);
    /// Leaves the caller's buffer in the file's order.
    [[nodiscard]] static bool WriteIntegerType(
        std::ofstream& stream, char* bytes, long long size, bool fileLittleEndian);

    [[nodiscard]] static bool ReadLittleEndian(std::ifstream& stream, unsigned short& value);
    [[nodiscard]] static bool ReadLittleEndian(std::ifstream& stream, unsigned int& value);
    [[nodiscard]] static bool ReadLittleEndian(std::ifstream& stream, unsigned long long& value);
    [[nodiscard]] static bool ReadLittleEndian(std::ifstream& stream, short& value);
    [[nodiscard]] static bool ReadLittleEndian(std::ifstream& stream, int& value);
    [[nodiscard]] static bool ReadLittleEndian(std::ifstream& stream, long long& value);

    [[nodiscard]] static bool ReadBigEndian(std::ifstream& stream, unsigned short& value);
    [[nodiscard]] static bool ReadBigEndian(std::ifstream& stream, unsigned int& value);
    [[nodiscard]] static bool ReadBigEndian(std::ifstream& stream, unsigned long long& value);
    [[nodiscard]] static bool ReadBigEndian(std::ifstream& stream, short& value);
    [[nodiscard]] static bool ReadBigEndian(std::ifstream& stream, int& value);
    [[nodiscard]] static bool ReadBigEndian(std::ifstream& stream, long long& value);

    [[nodiscard]] static bool WriteLittleEndian(std::ofstream& stream, unsigned short value);
    [[nodiscard]] static bool WriteLittleEndian(std::ofstream& stream, unsigned int value);
    [[nodiscard]] static bool WriteLittleEndian(std::ofstream& stream, unsigned long long value);
    [[nodiscard]] static bool WriteLittleEndian(std::ofstream& stream, short value);
    [[nodiscard]] static bool WriteLittleEndian(std::ofstream& stream, int value);
    [[nodiscard]] static bool WriteLittleEndian(std::ofstream& stream, long long value);

    [[nodiscard]] static bool WriteBigEndian(std::ofstream& stream, unsigned short value);
    [[nodiscard]] static bool WriteBigEndian(std::ofstream& stream, unsigned int value);
    [[nodiscard]] static bool WriteBigEndian(std::ofstream& stream, unsigned long long value);
    [[nodiscard]] static bool WriteBigEndian(std::ofstream& stream, short value);
    [[nodiscard]] static bool WriteBigEndian(std::ofstream& stream, int value);
    [[nodiscard]] static bool WriteBigEndian(std::ofstream& stream, long long value);

    [[nodiscard]] static bool ReadIEEE(std::ifstream& stream, float& value);
    [[nodiscard]] static bool ReadIEEE(std::ifstream& stream, double& value);
    [[nodiscard]] static bool WriteIEEE(std::ofstream& stream, float value);
    [[nodiscard]] static bool WriteIEEE(std::ofstream& stream, double value);

    /// 0 not yet examined, 1 ready, 2 byte order unknown, 3 floating-point format unknown.
    static std::int32_t m_state;
    static bool m_systemLittleEndian;
    /// For each byte in file order its place in memory.
    static std::array<unsigned char, 4> m_float32Map;
    static std::array<unsigned char, 8> m_float64Map;
};

} // namespace Tavro
