// SPDX-License-Identifier: Apache-2.0
#include "case/CaseFile.h"
#include "case/CaseFileLayout.h"
#include "tests/case/CaseImages.h"
#include "tests/case/Comparison.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

/// Walks a record and gives every field of it random bytes.
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
        flag = VRK::Flag::from_byte(m_random() % 2 == 0 ? 0 : byte());
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
    unsigned char byte() { return static_cast<unsigned char>(m_random()); }
    void bytes(void* target, std::size_t size)
    {
        for (std::size_t i = 0; i < size; ++i)
            static_cast<unsigned char*>(target)[i] = byte();
    }
    void fill(std::string& text, unsigned char least)
    {
        text.resize(m_random() % 20);
        for (char& c : text)
            c = static_cast<char>(std::max(least, byte()));
    }

    std::minstd_rand m_random;
};

VRK::ControllerInput random_case(std::uint32_t seed)
{
    VRK::ControllerInput input;
    Filler filler(seed);
    VRK::CaseFile::walk_case(filler, input);
    filler.path(input.m_fpCompletionFile);
    return input;
}

TEST(CaseFileRounds, TenThousandRandomRecordsComeBackToEqualBytes)
{
    std::size_t total = 0;
    for (std::uint32_t seed = 1; seed <= 10000; ++seed) {
        const std::string bytes = Testing::written_bytes(random_case(seed));
        VRK::ControllerInput copy;
        ASSERT_TRUE(Testing::read_bytes(bytes, copy)) << "seed " << seed;
        ASSERT_TRUE(Testing::same_bytes(bytes, Testing::written_bytes(copy))) << "seed " << seed;
        total += bytes.size();
    }
    EXPECT_GT(total, 10000U * 1000) << "the records have become too small to show anything";
}

TEST(CaseFileRounds, FilesHoldTheSameBytes)
{
    const Testing::TemporaryDirectory directory;
    for (std::uint32_t seed = 1; seed <= 100; ++seed) {
        const Tavro::FilePath file(directory.path(std::to_string(seed)));
        const auto original = random_case(seed);
        ASSERT_TRUE(original.Write(file));
        ASSERT_TRUE(
            Testing::same_bytes(Testing::written_bytes(original), Testing::read_file(file.Get())));
        VRK::ControllerInput copy;
        ASSERT_TRUE(copy.Read(file)) << "seed " << seed;
        ASSERT_TRUE(
            Testing::same_bytes(Testing::written_bytes(original), Testing::written_bytes(copy)));
    }
}

} // namespace
