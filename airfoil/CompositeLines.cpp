// SPDX-License-Identifier: Apache-2.0
#include "airfoil/TableLines.h"

#include "tavrobase/StringUtilities.h"

namespace Tavro {

namespace {

/// Lines behind the base line that a row of `count` values needs, its key among them.
template <typename Continuation>
std::size_t continuation_lines(int count)
{
    constexpr int kKeyAndFirst = 2;
    return count < kKeyAndFirst
        ? 0
        : static_cast<std::size_t>(count - kKeyAndFirst) / Continuation::kFields;
}

/// The label of the next line. The number is unsigned inside, so that it may run over.
std::string next_label(const std::string& label, int& number)
{
    const auto current = static_cast<unsigned int>(number);
    number = static_cast<int>(current + 1);
    return label.empty() ? label : label + cardNumber(current, "");
}

} // namespace

template <typename Base, typename Continuation>
bool CoefDataLine<Base, Continuation>::readFromFile(
    std::istream& stream, int count, unsigned long long& lineNumber, const BaseData& owner)
{
    bool good = Base::readFromFile(stream, owner) && this->m_present.front();
    ++lineNumber;
    m_continuation.assign(continuation_lines<Continuation>(count), Continuation());
    for (Continuation& line : m_continuation) {
        good = good && line.readFromFile(stream, owner);
        ++lineNumber;
    }
    return good;
}

template <typename Base, typename Continuation>
bool CoefDataLine<Base, Continuation>::writeToFile(
    std::ostream& stream, const std::string& label, int& cardNumber) const
{
    bool good = Base::writeToFile(stream, next_label(label, cardNumber));
    for (const Continuation& line : m_continuation) {
        const std::string text = next_label(label, cardNumber);
        good = good && line.writeToFile(stream, text);
    }
    return good;
}

template <typename Base, typename Continuation>
int CoefDataLine<Base, Continuation>::dataCount() const
{
    int count = Base::dataCount();
    for (const Continuation& line : m_continuation)
        count += line.dataCount();
    return count;
}

template <typename Base, typename Continuation>
std::string CoefDataLine<Base, Continuation>::first() const
{
    return this->m_present.front() ? NumToString(this->m_values.front()) : "unknown";
}

template class CoefDataLine<DoubleX10Line, DoubleX9Line>;
template class CoefDataLine<DoubleX7Line, DoubleX6Line>;

} // namespace Tavro
