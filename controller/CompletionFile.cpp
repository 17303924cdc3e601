// SPDX-License-Identifier: Apache-2.0
#include "controller/CompletionFile.h"

#include "state/ControllerState.h"
#include "tavrobase/StringUtilities.h"

#include <cstdint>
#include <fstream>

void write_completion_file(const Tavro::FilePath& file, VRK::ControllerStep step)
{
    std::ofstream stream(file.Get(), std::ios::binary);
    stream << Tavro::NumToString(static_cast<std::int32_t>(step)) + '\n';
}

void output_completion_file() { write_completion_file(g_info.m_fpCompletionFile, g_info.m_step); }
