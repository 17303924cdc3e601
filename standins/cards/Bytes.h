// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

namespace Standins {

static_assert(std::endian::native == std::endian::little, "the files are memory as it stands");

/// A binary file, value by value.
/// Errors: each member throws `Malformed` with the byte at which the file departs from what is
/// expected.
class Bytes {
public:
    explicit Bytes(const std::string& path);

    /// The next value; `what` names it in the message if the file ends before it is whole.
    template <typename Value>
    Value take(const std::string& what)
    {
        static_assert(std::is_trivially_copyable_v<Value>);
        Value value;
        std::memcpy(&value, front(sizeof(Value), what), sizeof(Value));
        m_taken = m_offset;
        m_offset += sizeof(Value);
        return value;
    }
    /// All that is left.
    [[nodiscard]] std::string rest() const { return m_bytes.substr(m_offset); }
    [[nodiscard]] std::uint64_t left() const { return m_bytes.size() - m_offset; }
    /// Checks that nothing is left.
    void end();

    /// Refuses the value taken last.
    [[noreturn]] void refuse(const std::string& wrong, const std::string& expected) const;

private:
    const char* front(std::size_t size, const std::string& what);

    std::string m_path;
    std::string m_bytes;
    std::size_t m_offset = 0;
    std::size_t m_taken = 0;
};

/// A trivial value as it stands in memory.
template <typename Value>
std::string_view bytes_of(const Value& value)
{
    static_assert(std::is_trivially_copyable_v<Value>);
    return { reinterpret_cast<const char*>(&value), sizeof(Value) };
}

} // namespace Standins
