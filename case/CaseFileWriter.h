// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/Column.h"
#include "case/Flag.h"
#include "tavrobase/FilePath.h"

#include <bit>
#include <cstdint>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

namespace VRK::CaseFile {

static_assert(std::endian::native == std::endian::little, "the file is memory as it stands");

/// Walks a case file for writing. The stream carries the faults.
class Writer {
public:
    explicit Writer(std::ostream& stream)
        : m_stream(stream)
    {
    }

    template <typename... Value>
    void values(const Value&... value)
    {
        static_assert((std::is_trivially_copyable_v<Value> && ...));
        (bytes(reinterpret_cast<const char*>(&value), sizeof(Value)), ...);
    }

    [[nodiscard]] bool choice(Flag flag)
    {
        values(flag);
        return flag;
    }

    void short_text(const std::string& text);
    void long_text(const std::string& text);
    void whole_long_text(const std::string& text) { long_text(text); }
    void path(const Tavro::FilePath& path) { short_text(path.Get()); }

    template <typename Element>
    void block(const std::vector<Element>& elements)
    {
        static_assert(std::is_trivially_copyable_v<Element>);
        const std::uint32_t count = counted(elements);
        bytes(reinterpret_cast<const char*>(elements.data()), count * sizeof(Element));
    }

    template <typename Element, typename WalkElement>
    void list(const std::vector<Element>& elements, WalkElement walk)
    {
        const std::uint32_t count = counted(elements);
        for (std::uint32_t i = 0; i < count; ++i)
            walk(elements[i]);
    }

    /// As many rows as the first column has.
    template <typename First, typename... Other>
    void table(const First& first, const Other&... other)
    {
        const std::uint32_t count = counted(first);
        for (std::uint32_t i = 0; i < count; ++i) {
            cell(first[i]);
            (cell(entry(other, i)), ...);
        }
    }

private:
    /// Writes how many there are, in the 32 bits that the file has for it.
    template <typename Container>
    std::uint32_t counted(const Container& elements)
    {
        const auto count = static_cast<std::uint32_t>(elements.size());
        values(count);
        return count;
    }

    template <typename Number>
    void cell(const Number& number)
    {
        values(number);
    }
    void cell(const std::string& text) { short_text(text); }

    void bytes(const char* source, std::size_t size)
    {
        m_stream.write(source, static_cast<std::streamsize>(size));
    }

    std::ostream& m_stream;
};

} // namespace VRK::CaseFile
