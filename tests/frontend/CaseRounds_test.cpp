// SPDX-License-Identifier: Apache-2.0
#include "case/CaseFile.h"
#include "case/CaseFileLayout.h"
#include "frontend/CaseChecks.h"
#include "frontend/CaseText.h"
#include "frontend/CaseTree.h"
#include "frontend/TomlReading.h"
#include "frontend/TreeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>

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
    void path(Tavro::FilePath& path)
    {
        path = Tavro::FilePath("/no/" + std::to_string(m_random()));
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

VRK::ControllerInput random_case(std::uint32_t seed)
{
    VRK::ControllerInput input {};
    Filler filler(seed);
    VRK::CaseFile::walk_case(filler, input);
    filler.path(input.m_fpCompletionFile);
    return input;
}

std::string bytes_of(const VRK::ControllerInput& input)
{
    std::ostringstream stream;
    EXPECT_TRUE(VRK::write_case(stream, input));
    return stream.str();
}

// Built twice, under two names: a thousand records, and some where the sanitizers look on.
constexpr std::uint32_t kRecords = VORTIK_RANDOM_RECORDS;

TEST(VORTIK_ROUNDS_SUITE, RandomRecordsComeBackToEqualBytesThroughTheirText)
{
    std::size_t total = 0;
    std::size_t hex = 0;
    for (std::uint32_t seed = 1; seed <= kRecords; ++seed) {
        const std::string bytes = bytes_of(random_case(seed));
        VRK::ControllerInput record {};
        std::istringstream stream(bytes);
        ASSERT_TRUE(VRK::read_case(stream, record)) << "seed " << seed;
        const std::string text = Frontend::toml_text(Frontend::show_case_tree(record));
        Frontend::Diagnostics diagnostics;
        const auto tree = Frontend::parse_toml(text, "shown.toml", diagnostics);
        std::ostringstream reported;
        diagnostics.print(reported);
        ASSERT_TRUE(tree) << "seed " << seed << '\n' << reported.str();
        const auto read = Frontend::read_case_tree(*tree, "shown.toml", diagnostics);
        diagnostics.print(reported);
        ASSERT_FALSE(diagnostics.failed()) << "seed " << seed << '\n' << reported.str();
        ASSERT_TRUE(bytes_of(read.record) == bytes) << "seed " << seed;
        if (seed <= 200) { // whatever is in it, all that is likely wrong can be reported
            Frontend::check_case(read, "/no/such/", diagnostics);
            ASSERT_GT(diagnostics.warnings(), 0U) << "seed " << seed;
            Frontend::Diagnostics whole; // as `vortik build` does it
            const auto built = Frontend::case_of_text(text, "shown.toml", whole);
            ASSERT_TRUE(built) << "seed " << seed;
            ASSERT_TRUE(bytes_of(*built) == bytes) << "seed " << seed;
        }
        total += bytes.size();
        hex += text.find("{ hex = ") != std::string::npos ? 1U : 0U;
    }
    EXPECT_GT(total, 1000U * kRecords) << "the records have become too small to show anything";
    EXPECT_GT(hex, kRecords / 2) << "texts that are no Unicode have become rare";
}

} // namespace
