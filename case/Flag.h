// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <type_traits>

namespace VRK {

/// A yes or no of the case file: one byte that stays what it was read as, any value but 0 being
/// true. A `bool` must not hold a 2, which a foreign writer may use and must get back.
class Flag {
public:
    Flag() = default;
    constexpr Flag(bool value) // NOLINT(google-explicit-constructor): flags are set from bool
        : m_ucByte(value ? 1 : 0)
    {
    }
    constexpr operator bool() const // NOLINT(google-explicit-constructor): and used as bool
    {
        return m_ucByte != 0;
    }

    [[nodiscard]] static constexpr Flag from_byte(unsigned char byte)
    {
        Flag flag(false);
        flag.m_ucByte = byte;
        return flag;
    }
    /// As it stands in the file.
    [[nodiscard]] constexpr unsigned char byte() const { return m_ucByte; }

private:
    unsigned char m_ucByte = 0;
};

static_assert(sizeof(Flag) == 1 && std::is_trivially_copyable_v<Flag>);

} // namespace VRK
