// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "case/Flag.h"
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

/// Walks a case file for reading. The stream carries the faults: after the first one nothing is
/// read any more, numbers keep their values, and texts and lists come out empty. No length or count
/// makes it ask for more memory than the stream has bytes left.
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
        std::uint32_t count = 0;
        values(count);
        elements.clear();
        while (m_stream && elements.size() < count)
            walk(elements.emplace_back());
    }

    template <typename... Column>
    void table(Column&... column)
    {
        std::uint32_t count = 0;
        values(count);
        (column.clear(), ...);
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
