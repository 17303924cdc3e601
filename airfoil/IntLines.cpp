// SPDX-License-Identifier: Apache-2.0
#include "airfoil/FieldText.h"
#include "airfoil/TableLines.h"

#include "tavrobase/StringUtilities.h"

#include <algorithm>
#include <istream>
#include <ostream>

namespace Tavro {

template <std::size_t Fields, std::size_t Width>
bool IntLine<Fields, Width>::readFromFile(std::istream& stream, const BaseData& owner)
{
    if (!stream.good())
        return false;
    const bool wasRead = FieldText::read_line(stream, m_line);
    for (std::size_t i = 0; i < Fields; ++i) {
        const auto field = FieldText::cut(m_line, i, Width, kFirstColumn);
        m_present[i] = !field.empty();
        m_values[i] = m_present[i]
            ? FieldText::leading_int(FieldText::mended(field, goodIntChars, "0", owner))
            : 0;
    }
    return wasRead;
}

template <std::size_t Fields, std::size_t Width>
bool IntLine<Fields, Width>::writeToFile(std::ostream& stream, const std::string& label) const
{
    if (!stream.good())
        return false;
    std::string text;
    for (std::size_t i = 0; i < Fields; ++i)
        text += FieldText::right_justified(m_present[i] ? NumToString(m_values[i]) : "", Width);
    text += FieldText::line_tail(label);
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    return stream.good();
}

template <std::size_t Fields, std::size_t Width>
int IntLine<Fields, Width>::dataCount() const
{
    return static_cast<int>(std::count(m_present.begin(), m_present.end(), true));
}

template class IntLine<14, 5>;
template class IntLine<20, 2>;

} // namespace Tavro
