// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/RestartFile.h"

#include "standins/cards/Bytes.h"
#include "standins/cards/WholeFile.h"

namespace Standins {

RestartFile read_restart_file(const std::string& path)
{
    Bytes file(path);
    RestartFile restart;
    restart.m_auintHead = file.take<std::array<std::uint32_t, 7>>("the first seven words");
    restart.m_uintStep = file.take<std::uint32_t>("the step");
    restart.m_strState = file.rest();
    return restart;
}

void write_restart_file(const std::string& path, const RestartFile& restart)
{
    std::string words(bytes_of(restart.m_auintHead));
    words += bytes_of(restart.m_uintStep);
    write_whole_file(path, words, restart.m_strState);
}

} // namespace Standins
