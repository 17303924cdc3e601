// SPDX-License-Identifier: Apache-2.0
#include "controller/CompletionFile.h"

#include "state/ControllerState.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/SystemPath.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <system_error>

void write_completion_file(const Tavro::FilePath& file, VRK::ControllerStep step)
{
    const std::string line = Tavro::NumToString(static_cast<std::int32_t>(step)) + '\n';
    // Written over the old word and then cut to its length: emptied first, the file would say
    // nothing at all after a kill in between or on a full disk.
    std::fstream stream(file.Get(), std::ios::binary | std::ios::in | std::ios::out);
    if (!stream.is_open())
        stream.open(file.Get(), std::ios::binary | std::ios::out | std::ios::trunc);
    stream << line;
    stream.close();
    std::error_code ignored; // a pipe, or no file: there is nothing to cut
    if (stream.good())
        std::filesystem::resize_file(Tavro::SystemPath(file.Get()), line.size(), ignored);
}

void output_completion_file() { write_completion_file(g_info.m_fpCompletionFile, g_info.m_step); }
