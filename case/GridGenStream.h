// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <istream>
#include <ostream>
#include <type_traits>
#include <vector>

/// The grid generator's input file as a stream of packed records, passed by in blocks: memory does
/// not grow with the file.
namespace VRK::GridGen {

static_assert(std::endian::native == std::endian::little, "the file is memory as it stands");

/// First word of an entity.
constexpr std::uint32_t kTriangle = 2;
constexpr std::uint32_t kBox = 3;

/// Bytes of an entity behind its kind word.
constexpr std::size_t kTriangleBytes = 4 + 9 * 8 + 4 + 4 + 1;
constexpr std::size_t kBoxBytes = 4 + 6 * 8 + 4;
constexpr std::size_t kPointBytes = 8 + 8 + 8;

constexpr std::size_t kBlockBytes = 1 << 18;

/// Gathers what is put and hands it on in blocks. The stream carries the faults.
class Output {
public:
    explicit Output(std::ostream& stream)
        : m_stream(stream)
        , m_block(kBlockBytes)
    {
    }

    /// Numbers, flags and arrays, one directly after the other.
    template <typename... Value>
    void put(const Value&... value)
    {
        static_assert((std::is_trivially_copyable_v<Value> && ...));
        char* target = room((sizeof(Value) + ...));
        ((std::memcpy(target, &value, sizeof(Value)), target += sizeof(Value)), ...);
    }
    void put_bytes(const char* source, std::size_t size);

    /// Bytes put so far.
    [[nodiscard]] std::uint64_t position() const { return m_handedOn + m_used; }
    /// To be called at the end: what is not flushed is not written.
    void flush();

private:
    char* room(std::size_t size)
    {
        if (m_block.size() - m_used < size)
            flush();
        m_used += size;
        return m_block.data() + m_used - size;
    }

    std::ostream& m_stream;
    std::vector<char> m_block;
    std::size_t m_used = 0;
    std::uint64_t m_handedOn = 0;
};

/// Takes records off a stream that it reads in blocks.
class Input {
public:
    explicit Input(std::istream& stream)
        : m_stream(stream)
        , m_block(kBlockBytes)
    {
    }

    /// The next `size` bytes, at most `kBlockBytes`, good until the next call; null if fewer are
    /// left.
    [[nodiscard]] const char* take(std::size_t size)
    {
        if (m_end - m_begin < size && !refill(size))
            return nullptr;
        m_begin += size;
        return m_block.data() + m_begin - size;
    }

    /// False, with the values untouched, if fewer bytes are left.
    template <typename... Value>
    [[nodiscard]] bool values(Value&... value)
    {
        static_assert((std::is_trivially_copyable_v<Value> && ...));
        const char* source = take((sizeof(Value) + ...));
        if (source == nullptr)
            return false;
        ((std::memcpy(&value, source, sizeof(Value)), source += sizeof(Value)), ...);
        return true;
    }

private:
    [[nodiscard]] bool refill(std::size_t size);

    std::istream& m_stream;
    std::vector<char> m_block;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
};

} // namespace VRK::GridGen
