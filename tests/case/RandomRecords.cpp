// SPDX-License-Identifier: Apache-2.0
#include "tests/case/RandomRecords.h"

#include "case/CaseFileLayout.h"

#include <algorithm>
#include <iterator>
#include <random>

namespace Testing {

namespace {

/// Walks a record by the layout of its file and gives every field of it random bytes.
class Filler {
public:
    explicit Filler(std::uint32_t seed)
        : m_random(seed)
    {
    }

    template <typename... Value>
    void values(Value&... value)
    {
        (bytes(&value, sizeof(Value)), ...);
    }
    bool choice(VRK::Flag& flag)
    {
        flag = VRK::Flag::from_byte(
            m_random() % 2 == 0 ? 0 : static_cast<unsigned char>(m_random()));
        return flag;
    }
    void short_text(std::string& text) { fill(text, 1); }
    void long_text(std::string& text) { fill(text, 1); }
    void whole_long_text(std::string& text) { fill(text, 0); }
    /// Not below the current directory, where a name may become that of a directory.
    void path(Tavro::FilePath& path)
    {
        path = Tavro::FilePath("/no/such/" + std::to_string(m_random()));
    }
    template <typename Element>
    void block(std::vector<Element>& elements)
    {
        elements.resize(m_random() % 4);
        bytes(elements.data(), elements.size() * sizeof(Element));
    }
    template <typename Element, typename WalkElement>
    void list(std::vector<Element>& elements, WalkElement walk)
    {
        elements.resize(m_random() % 4);
        for (Element& element : elements)
            walk(element);
    }
    template <typename... Column>
    void table(Column&... column)
    {
        const std::size_t rows = m_random() % 4;
        (column.resize(rows), ...);
        for (std::size_t i = 0; i < rows; ++i)
            (cell(column[i]), ...);
    }

private:
    template <typename Number>
    void cell(Number& number)
    {
        values(number);
    }
    void cell(std::string& text) { short_text(text); }

    /// Every bit may be set; now and then a number of a kind that is rare among random bits.
    void bytes(void* target, std::size_t size)
    {
        auto* byte = static_cast<unsigned char*>(target);
        for (std::size_t i = 0; i < size; ++i)
            byte[i] = static_cast<unsigned char>(m_random());
        if (size % 8 != 0 || size == 0)
            return;
        constexpr std::uint64_t kRare[] { 0x7FF0000000000000, 0xFFF0000000000000,
            0x7FF8000000000000, 0xFFF8000000000000, 0x7FF0000000000001, 0x7FF8DEADBEEF0001,
            0x8000000000000000, 0, 1, 0x000FFFFFFFFFFFFF, 0x7FEFFFFFFFFFFFFF, 0x3FF0000000000000 };
        if (m_random() % 4 == 0)
            std::copy_n(
                reinterpret_cast<const unsigned char*>(&kRare[m_random() % std::size(kRare)]), 8,
                byte);
    }
    /// Bytes of any kind, or letters, or what TOML must escape.
    void fill(std::string& text, unsigned char least)
    {
        const std::string odd = "a\"\\\n\r\t\x01\x7F'#=[]{}\xC3\xA4\xE2\x82\xAC\xF0\x9F\x9A\x81";
        text.resize(m_random() % 20);
        const auto kind = m_random() % 3;
        for (char& c : text) {
            const auto byte = static_cast<unsigned char>(m_random());
            c = static_cast<char>(std::max<unsigned char>(least, kind == 0 ? byte : byte % 128));
        }
        if (kind == 2)
            text = odd.substr(0, 1 + m_random() % 13) + "\xC3\xA4\n\n\xF0\x9F\x9A\x81\n" + odd;
    }

    std::minstd_rand m_random;
};

} // namespace

VRK::ControllerInput random_case(std::uint32_t seed)
{
    VRK::ControllerInput input {};
    Filler filler(seed);
    VRK::CaseFile::walk_case(filler, input);
    filler.path(input.m_fpCompletionFile);
    return input;
}

} // namespace Testing
