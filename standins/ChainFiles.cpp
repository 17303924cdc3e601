// SPDX-License-Identifier: Apache-2.0
#include "standins/ChainFiles.h"

#include "standins/KeyedFile.h"
#include "standins/Refusal.h"
#include "standins/cards/Malformed.h"
#include "standins/cards/Numbers.h"

namespace Standins {

void write_chain_file(
    const std::string& path, const ChainFile& form, std::uint32_t mark, const std::string& value)
{
    write_keyed_file(
        path, form.m_szTitle, { { "grid", std::to_string(mark) }, { form.m_szKey, value } });
}

ChainValue read_chain_file(const std::string& path, const ChainFile& form)
{
    const auto values = read_keyed_file(path, form.m_szTitle, { "grid", form.m_szKey });
    const auto mark = Numbers::unsigned_of(values[0]);
    if (!mark)
        throw Malformed::at_line(path, 2, "\"" + values[0] + "\"", "the mark of a grid");
    return { *mark, values[1] };
}

std::string read_chain_file(const std::string& path, const ChainFile& form, std::uint32_t mark)
{
    const ChainValue value = read_chain_file(path, form);
    if (value.m_uintMark != mark)
        throw Refusal(path + ": made for grid " + std::to_string(value.m_uintMark)
            + ", and the grid is " + std::to_string(mark));
    return value.m_strValue;
}

} // namespace Standins
