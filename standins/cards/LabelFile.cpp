// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/LabelFile.h"

#include "standins/cards/Lines.h"
#include "standins/cards/Malformed.h"
#include "standins/cards/Numbers.h"
#include "standins/cards/WholeFile.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

namespace Standins {

namespace {

/// Words of a text, with the lines on which they stand.
class Words {
public:
    explicit Words(const std::string& path)
        : m_path(path)
        , m_text(read_whole_file(path))
    {
        skip_space();
    }

    [[nodiscard]] bool at_end() const { return m_at == m_text.size(); }

    template <typename Value>
    Value value(std::optional<Value> (*read)(std::string_view), const std::string& expected)
    {
        const std::size_t end = std::min(m_text.find_first_of(kSpace, m_at), m_text.size());
        const std::string_view word = std::string_view(m_text).substr(m_at, end - m_at);
        if (word.empty())
            throw Malformed::at_line(m_path, m_line, "found the end of the file", expected);
        const std::optional<Value> found = read(word);
        if (!found)
            throw Malformed::at_line(m_path, m_line, "found " + shown(word), expected);
        m_at = end;
        skip_space();
        return *found;
    }

private:
    static constexpr const char* kSpace = " \t\r\n\v\f";

    void skip_space()
    {
        const std::size_t end = std::min(m_text.find_first_not_of(kSpace, m_at), m_text.size());
        for (; m_at < end; ++m_at) {
            if (m_text[m_at] == '\n')
                ++m_line;
        }
    }

    std::string m_path;
    std::string m_text;
    std::size_t m_at = 0;
    std::size_t m_line = 1;
};

std::array<double, 6> take_six(Words& words, const std::string& what)
{
    std::array<double, 6> values {};
    for (double& value : values)
        value = words.value(Numbers::finite_of, "a finite number of " + what);
    return values;
}

void put_six(const std::string& path, std::string& text, const std::array<double, 6>& values)
{
    for (const double value : values) {
        if (!std::isfinite(value))
            throw Malformed::whole(path, "cannot be written with a number that is not finite");
        text += ' ' + Numbers::shortest_text(value);
    }
}

} // namespace

LabelFile read_label_file(const std::string& path)
{
    Words words(path);
    LabelFile labels;
    labels.m_nLevelLimit
        = words.value(Numbers::signed_of, "the level limit, a number without a fraction");
    labels.m_nBackgroundLevel
        = words.value(Numbers::signed_of, "the background level, a number without a fraction");
    labels.m_adBackgroundBox = take_six(words, "the background box");
    while (!words.at_end()) {
        LabelRecord record;
        record.m_adBounds = take_six(words, "the bounds of a record");
        record.m_nShift
            = words.value(Numbers::signed_of, "the level shift, a number without a fraction");
        record.m_adOffsets = take_six(words, "the offsets of a record");
        labels.m_vecRecords.push_back(record);
    }
    return labels;
}

void write_label_file(const std::string& path, const LabelFile& labels)
{
    std::string text
        = std::to_string(labels.m_nLevelLimit) + ' ' + std::to_string(labels.m_nBackgroundLevel);
    put_six(path, text, labels.m_adBackgroundBox);
    text += '\n';
    for (const LabelRecord& record : labels.m_vecRecords) {
        std::string line;
        put_six(path, line, record.m_adBounds);
        line += ' ' + std::to_string(record.m_nShift);
        put_six(path, line, record.m_adOffsets);
        text += line.substr(1) + '\n';
    }
    write_whole_file(path, text);
}

} // namespace Standins
