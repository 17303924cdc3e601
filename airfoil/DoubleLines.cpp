// SPDX-License-Identifier: Apache-2.0
#include "airfoil/FieldText.h"
#include "airfoil/TableLines.h"

#include <algorithm>
#include <istream>
#include <ostream>

namespace Tavro {

template <std::size_t Fields, std::size_t Width, std::size_t FirstColumn>
DoubleLine<Fields, Width, FirstColumn>::DoubleLine()
{
    for (std::size_t i = 0; i < Fields; ++i) // as fields of an empty line
        extractDouble(m_line, i, Width, FirstColumn, m_values.data(), m_present.data(),
            m_decimals.data(), m_leadingZero.data(), BaseData());
}

template <std::size_t Fields, std::size_t Width, std::size_t FirstColumn>
bool DoubleLine<Fields, Width, FirstColumn>::readFromFile(
    std::istream& stream, const BaseData& owner)
{
    if (!stream.good())
        return false;
    const bool wasRead = FieldText::read_line(stream, m_line);
    for (std::size_t i = 0; i < Fields; ++i)
        extractDouble(m_line, i, Width, FirstColumn, m_values.data(), m_present.data(),
            m_decimals.data(), m_leadingZero.data(), owner);
    return wasRead;
}

template <std::size_t Fields, std::size_t Width, std::size_t FirstColumn>
bool DoubleLine<Fields, Width, FirstColumn>::writeToFile(
    std::ostream& stream, const std::string& label) const
{
    if (!stream.good())
        return false;
    stream.setf(std::ios::fixed, std::ios::floatfield);
    stream.fill(' ');
    std::string text(FirstColumn, ' '); // NOLINT(bugprone-string-constructor): some have none
    for (std::size_t i = 0; i < Fields; ++i)
        text += formatDouble(m_values[i], m_decimals[i], Width, m_present[i], !m_leadingZero[i]);
    text += FieldText::line_tail(label);
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    return stream.good();
}

template <std::size_t Fields, std::size_t Width, std::size_t FirstColumn>
int DoubleLine<Fields, Width, FirstColumn>::dataCount() const
{
    return static_cast<int>(std::count(m_present.begin(), m_present.end(), true));
}

template class DoubleLine<6, 10, 10>;
template class DoubleLine<6, 10, 0>;
template class DoubleLine<7, 10, 0>;
template class DoubleLine<9, 7, 7>;
template class DoubleLine<10, 7, 0>;

} // namespace Tavro
