// SPDX-License-Identifier: Apache-2.0
#include "standins/Output.h"

#include "standins/Refusal.h"
#include "tavrobase/FilePath.h"
#include "tavrobase/SystemPath.h"

#include <filesystem>
#include <fstream>

namespace Standins {

namespace {

void put(const std::string& path, const std::string& text, std::ios::openmode mode)
{
    std::ofstream file(path, std::ios::binary | mode);
    file << text;
    file.close();
    if (!file)
        throw Refusal(path + ": cannot be written");
}

} // namespace

void write_text(const std::string& path, const std::string& text)
{
    put(path, text, std::ios::trunc);
}

void append_text(const std::string& path, const std::string& text)
{
    put(path, text, std::ios::app);
}

void make_directory(const std::string& path)
{
    const Tavro::FilePath directory(path);
    if (!directory.IsDirectory() && Tavro::createDirectory(directory, 0755) != 0)
        throw Refusal(path + ": cannot be created");
}

void replace_restart_file(const std::string& path, const RestartFile& restart)
{
    const std::string part = path + ".part";
    write_restart_file(part, restart);
    std::error_code error;
    std::filesystem::rename(Tavro::SystemPath(part), Tavro::SystemPath(path), error);
    if (error)
        throw Refusal(path + ": " + error.message());
}

} // namespace Standins
