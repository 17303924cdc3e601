// SPDX-License-Identifier: Apache-2.0
#include "controller/BodyGridCopies.h"

#include "controller/RunFiles.h"
#include "controller/UncaughtException.h"
#include "tavrobase/BinaryFileIO.h"
#include "tavrobase/FileUtilities.h"
#include "tavrobase/PathIdentity.h"
#include "tavrobase/platform/Files.h"

#include <array>
#include <bit>
#include <cstring>
#include <fstream>

namespace {

constexpr std::size_t kKeptSize = 40; ///< header bytes that are copied as they stand
constexpr std::size_t kStampSize = 12; ///< time and flag behind them
constexpr std::size_t kHeaderSize = kKeptSize + kStampSize;

static_assert(
    std::endian::native == std::endian::little, "the header is stored as it is in memory");

std::array<char, kStampSize> stamp(double time, bool newGrid)
{
    std::array<char, kStampSize> bytes {};
    const std::int32_t flag = newGrid ? 1 : 0;
    std::memcpy(bytes.data(), &time, sizeof time);
    std::memcpy(bytes.data() + sizeof time, &flag, sizeof flag);
    return bytes;
}

/// Nothing of a file that is too short for a header is copied but the header.
void write_header_alone(
    const std::string& source, const std::string& target, double time, bool newGrid)
{
    std::array<char, kKeptSize> kept {};
    std::ifstream stream(source, std::ios::binary);
    stream.read(kept.data(), kept.size());
    std::ofstream copy(target, std::ios::binary);
    copy.write(kept.data(), kept.size());
    copy.write(stamp(time, newGrid).data(), kStampSize);
}

/// The last byte of a body behind its header; zero if there is none.
char last_byte(const std::string& source, std::uint64_t size)
{
    if (size <= kHeaderSize)
        return 0;
    std::ifstream stream(source, std::ios::binary);
    stream.seekg(-1, std::ios::end);
    char byte = 0;
    stream.get(byte);
    return byte;
}

} // namespace

void copy_body_grid(const std::string& source, const std::string& target, double time, bool newGrid)
{
    const auto facts = Tavro::Platform::file_facts(source);
    const std::uint64_t size = facts && is_file(source) ? facts->size : 0;
    if (Tavro::LeadToOneFile(source, target))
        return; // a link to the present grid would stamp that
    // The whole file first, since only whole files can share their blocks; then what differs. A
    // copy that the disk cuts short is reported by its reader.
    if (size >= kKeptSize)
        (void)Tavro::Platform::copy_contents(source, target);
    const auto copied = Tavro::Platform::file_facts(target);
    if (size < kKeptSize || !copied || copied->size < kKeptSize) {
        write_header_alone(source, target, time, newGrid);
        return;
    }
    std::fstream copy(target, std::ios::binary | std::ios::in | std::ios::out);
    copy.seekp(kKeptSize);
    copy.write(stamp(time, newGrid).data(), kStampSize);
    copy.seekp(0, std::ios::end);
    copy.put(last_byte(source, size));
}

void copy_first_body_grid(const std::string& caseName)
{
    make_missing_directory(body_pressure());
    const std::string source = body_grid_file(caseName);
    const FileInWork inWork(source);
    const Tavro::FilePath body = Tavro::AsWritten(source);
    if (body.Exists()) {
        // What cannot be copied is missed by its reader, not by the run.
        (void)Tavro::copyFile(body, Tavro::AsWritten(body_pressure(caseName + "_body.Grd")));
    }
}
