// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/BodyGrid.h"

#include "standins/cards/Bytes.h"
#include "standins/cards/Malformed.h"
#include "standins/cards/WholeFile.h"

#include <cmath>

namespace Standins {

namespace {

bool is_flag(std::int32_t flag) { return flag == 0 || flag == 1; }

} // namespace

BodyGrid read_body_grid(const std::string& path)
{
    Bytes file(path);
    BodyGrid grid;
    grid.m_acHeader = file.take<std::array<char, 40>>("the header");
    grid.m_dTime = file.take<double>("the solution time");
    if (!std::isfinite(grid.m_dTime))
        file.refuse("found a time that is not finite", "a finite solution time");
    grid.m_nNewGrid = file.take<std::int32_t>("the new-grid flag");
    if (!is_flag(grid.m_nNewGrid))
        file.refuse("found the new-grid flag " + std::to_string(grid.m_nNewGrid), "0 or 1");
    grid.m_strBody = file.rest();
    return grid;
}

void write_body_grid(const std::string& path, const BodyGrid& grid)
{
    if (!std::isfinite(grid.m_dTime))
        throw Malformed::whole(path, "cannot be written with a time that is not finite");
    if (!is_flag(grid.m_nNewGrid))
        throw Malformed::whole(path, "cannot be written with a new-grid flag but 0 and 1");
    std::string header(grid.m_acHeader.begin(), grid.m_acHeader.end());
    header += bytes_of(grid.m_dTime);
    header += bytes_of(grid.m_nNewGrid);
    write_whole_file(path, header, grid.m_strBody);
}

} // namespace Standins
