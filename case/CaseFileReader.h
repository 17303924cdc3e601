// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/Flag.h"
#include "case/GridData.h"
#include "case/RotorData.h"
#include "tavrobase/FilePath.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace VRK::CaseFile {

static_assert(std::endian::native == std::endian::little, "the file is memory as it stands");

/// Bytes that an element of a list takes in the file at least: all its texts and tables are empty.
template <typename Element>
constexpr std::size_t kSmallest = 0;
template <>
inline constexpr std::size_t kSmallest<BodyData> = 13;
template <>
inline constexpr std::size_t kSmallest<RotorData> = 170;

/// No row or element takes more bytes of memory than this for each of its bytes in the file.
constexpr std::size_t kMemoryPerByte = 4;

/// Walks a case file for reading. The stream carries the faults. After the first one nothing is
/// read any more: numbers and flags keep their values, but the one that was cut short has the bytes
/// that were there; texts, paths and lists that are still asked for come out empty.
///
/// Memory: a length or count asks at once for at most `kMemoryPerByte` times the bytes that the
/// stream has left, and one element. A stream that cannot tell is read by pieces, so that memory
/// stays in proportion to what came.
class Reader {
public:
    explicit Reader(std::istream& stream);

    template <typename... Value>
    void values(Value&... value)
    {
        static_assert((std::is_trivially_copyable_v<Value> && ...));
        (bytes(reinterpret_cast<char*>(&value), sizeof(Value)), ...);
    }

    [[nodiscard]] bool choice(Flag& flag)
    {
        values(flag);
        return m_stream.good() && flag;
    }

    void short_text(std::string& text);
    void long_text(std::string& text);
    void whole_long_text(std::string& text);
    void path(Tavro::FilePath& path);
    /// What follows a length of a text that is cut at its first zero byte.
    [[nodiscard]] std::string text_of_length(std::uint64_t length);

    template <typename Element>
    void block(std::vector<Element>& elements)
    {
        static_assert(std::is_trivially_copyable_v<Element>);
        std::uint32_t count = 0;
        values(count);
        elements.clear();
        const std::uint64_t whole
            = m_left ? std::min<std::uint64_t>(count, *m_left / sizeof(Element)) : count;
        if (m_left)
            elements.reserve(whole);
        // By pieces that stay in the cache, so that a long list is not filled with zeros first.
        constexpr std::uint64_t kPiece = std::max<std::uint64_t>(1, kPieceBytes / sizeof(Element));
        while (m_stream && elements.size() < whole) {
            const std::size_t begin = elements.size();
            elements.resize(begin + std::min<std::uint64_t>(kPiece, whole - begin));
            const std::size_t got = bytes(reinterpret_cast<char*>(elements.data() + begin),
                (elements.size() - begin) * sizeof(Element));
            elements.resize(begin + got / sizeof(Element));
        }
        if (whole < count)
            fail();
    }

    /// The element that is cut short stays, with what was there of it.
    template <typename Element, typename WalkElement>
    void list(std::vector<Element>& elements, WalkElement walk)
    {
        static_assert(sizeof(Element) <= kMemoryPerByte * kSmallest<Element>);
        std::uint32_t count = 0;
        values(count);
        elements.clear();
        if (m_left) // one more, for an element that is cut short
            elements.reserve(std::min<std::uint64_t>(count, *m_left / kSmallest<Element> + 1));
        while (m_stream && elements.size() < count)
            walk(elements.emplace_back());
    }

    template <typename... Column>
    void table(Column&... column)
    {
        constexpr std::size_t kRow = (kSmallestCell<typename Column::value_type> + ...);
        static_assert((sizeof(typename Column::value_type) + ...) <= kMemoryPerByte * kRow);
        std::uint32_t count = 0;
        values(count);
        (column.clear(), ...);
        if (m_left)
            (column.reserve(std::min<std::uint64_t>(count, *m_left / kRow)), ...);
        for (std::uint32_t i = 0; i < count; ++i) {
            std::tuple<typename Column::value_type...> row;
            std::apply([this](auto&... entry) { (this->cell(entry), ...); }, row);
            if (!m_stream)
                return;
            std::apply(
                [&column...](auto&... entry) { (column.push_back(std::move(entry)), ...); }, row);
        }
    }

private:
    static constexpr std::uint64_t kPieceBytes = 1 << 16;

    /// Of a text its length is always there.
    template <typename Cell>
    static constexpr std::size_t kSmallestCell
        = std::is_same_v<Cell, std::string> ? sizeof(std::uint32_t) : sizeof(Cell);

    template <typename Number>
    void cell(Number& number)
    {
        values(number);
    }
    void cell(std::string& text) { short_text(text); }

    /// How many bytes came.
    std::size_t bytes(char* target, std::size_t size);
    [[nodiscard]] std::string whole_text_of_length(std::uint64_t length);
    void fail() { m_stream.setstate(std::ios::failbit | std::ios::eofbit); }

    std::istream& m_stream;
    std::optional<std::uint64_t> m_left; ///< nothing if the stream cannot tell
};

} // namespace VRK::CaseFile
