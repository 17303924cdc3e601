// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/TimeSchedule.h"

#include "standins/cards/Lines.h"
#include "standins/cards/Numbers.h"

#include <cmath>
#include <limits>

namespace Standins {

namespace {

constexpr const char* kGap = "      ";

/// Numbers of a schedule are all in one form, and the first one tells which.
class ScheduleForm {
public:
    double take(LineParts& line)
    {
        if (!m_known) {
            const std::string_view word = line.rest().substr(0, line.rest().find(' '));
            m_scientific = Numbers::scientific_of(word).has_value();
            m_known = true;
        }
        return m_scientific ? line.value(Numbers::scientific_of) : line.value(Numbers::general_of);
    }
    void be_scientific() { m_known = m_scientific = true; }
    [[nodiscard]] bool scientific() const { return m_scientific; }
    [[nodiscard]] bool may_be_scientific() const { return !m_known || m_scientific; }
    [[nodiscard]] const char* text() const
    {
        return !m_known    ? "a finite number"
            : m_scientific ? Numbers::kScientific
                           : Numbers::kGeneral;
    }

private:
    bool m_known = false;
    bool m_scientific = false;
};

/// A layer of no steps, cut: its length is nothing divided by nothing.
bool no_number(const LineParts& line)
{
    return line.rest().starts_with("nan ") || line.rest().starts_with("-nan ");
}

void read_extent(Lines& lines, std::size_t number, ScheduleForm& form, TimeLayer& layer)
{
    lines.literal("# ----Layer---   ----tLen----   ---NtCell---   ----Ratt----");
    LineParts line(lines,
        "layer " + std::to_string(number) + ": \" " + std::to_string(number) + "\", " + form.text()
            + ", an unsigned number and 1.0d0, six blanks between them");
    line.literal(" " + std::to_string(number));
    line.literal(kGap);
    const bool none = no_number(line) && form.may_be_scientific();
    if (none) {
        (void)line.word(); // known to be "nan"
        form.be_scientific();
        layer.m_dLength = std::numeric_limits<double>::quiet_NaN();
    } else {
        layer.m_dLength = form.take(line);
    }
    line.literal(kGap);
    layer.m_uintSteps = line.value(Numbers::unsigned_of);
    line.literal(std::string(kGap) + "1.0d0");
    line.end();
    if (none && layer.m_uintSteps != 0)
        line.refuse();
}

/// A line that has the same word twice, which it leaves to `take` to read.
template <typename Take>
auto read_twice(Lines& lines, const std::string& kind, Take take)
{
    LineParts line(lines, kind + " twice, five blanks before and six between them");
    line.literal("     ");
    const std::string_view whole = line.rest();
    const auto found = take(line);
    const std::string_view word = whole.substr(0, whole.size() - line.rest().size());
    line.literal(kGap);
    line.literal(word);
    line.end();
    return found;
}

TimeLayer read_layer(Lines& lines, std::size_t number, ScheduleForm& form)
{
    TimeLayer layer;
    read_extent(lines, number, form, layer);
    lines.literal("#    --NIterBgn--   --NIterEnd--");
    layer.m_uintIterations = read_twice(lines, Numbers::kUnsigned,
        [](LineParts& line) { return line.value(Numbers::unsigned_of); });
    const auto relaxation = [&](const char* heading) {
        lines.literal(heading);
        return read_twice(lines, form.text(), [&](LineParts& line) { return form.take(line); });
    };
    layer.m_dRlxu = relaxation("#    ---RlxuBgn--   ---RlxuEnd--");
    layer.m_dRlxv = relaxation("#    ---RlxvBgn--   ---RlxvEnd--");
    layer.m_dRlxw = relaxation("#    ---RlxwBgn--   ---RlxwEnd--");
    layer.m_dRlxp = relaxation("#    ---RlxpBgn--   ---RlxpEnd--");
    return layer;
}

} // namespace

std::uint64_t TimeSchedule::steps() const
{
    std::uint64_t sum = 0;
    for (const TimeLayer& layer : m_vecLayers)
        sum += layer.m_uintSteps;
    return sum;
}

double TimeSchedule::time_of_step(std::uint64_t step) const
{
    double time = 0.0;
    for (const TimeLayer& layer : m_vecLayers) {
        if (step == 0)
            break;
        if (step < layer.m_uintSteps) {
            return time
                + layer.m_dLength / static_cast<double>(layer.m_uintSteps)
                * static_cast<double>(step);
        }
        if (std::isfinite(layer.m_dLength))
            time += layer.m_dLength;
        step -= layer.m_uintSteps;
    }
    return time;
}

TimeSchedule read_time_schedule(const std::string& path)
{
    Lines lines(path);
    TimeSchedule schedule;
    ScheduleForm form;
    lines.literal("# NLayt");
    const auto layers = lines.value(Numbers::unsigned_of, Numbers::kUnsigned);
    for (std::size_t i = 1; i <= layers; ++i)
        schedule.m_vecLayers.push_back(read_layer(lines, i, form));
    lines.end();
    schedule.m_bScientific = form.scientific();
    return schedule;
}

} // namespace Standins
