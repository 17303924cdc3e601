// SPDX-License-Identifier: Apache-2.0
#include "controller/RestartFiles.h"

#include "controller/RunFiles.h"
#include "controller/UncaughtException.h"
#include "tavrobase/FileUtilities.h"
#include "tavrobase/PathIdentity.h"

#include <array>
#include <cstring>
#include <fstream>

namespace {

constexpr std::size_t kStepWord = 7;

void copy(const std::string& from, const std::string& to)
{
    const FileInWork inWork(from);
    // A copy that fails does not end the run; the adapter says what it lacks.
    (void)Tavro::copyFile(Tavro::AsWritten(from), Tavro::AsWritten(to));
}

} // namespace

std::optional<std::uint32_t> read_restart_step(const std::string& file)
{
    std::array<std::uint32_t, kStepWord + 1> words {};
    std::array<char, sizeof words> bytes {};
    std::ifstream stream(file, std::ios::binary);
    if (!stream.read(bytes.data(), bytes.size()))
        return std::nullopt;
    std::memcpy(words.data(), bytes.data(), bytes.size());
    return words[kStepWord];
}

void save_old_state(const std::string& source, const std::string& caseName)
{
    copy(source, restart_file(caseName, ".old.Rst"));
    copy(below_solver_input("/ParmFlw.h"), below_solver_input("/ParmFlw.old.h"));
    copy(below_grid_output("/GeomBC.dat"), below_grid_output("/GeomBC.old.dat"));
}
