// SPDX-License-Identifier: Apache-2.0
#include "case/CaseFile.h"

#include "case/CaseFileLayout.h"
#include "case/CaseFileReader.h"
#include "case/CaseFileWriter.h"

#include <fstream>
#include <stdexcept>

namespace VRK {

// Lists of these go to and from the file as memory.
static_assert(sizeof(Tavro::Vector<double, 3>) == 24);
static_assert(sizeof(Tavro::Facet<double, 3, 3>) == 72);
static_assert(sizeof(Tavro::BoundingBox<double, 3>) == 48);
static_assert(sizeof(RefBoxData) == 56);
static_assert(offsetof(RefBoxData, m_uintLevel) == 48 && offsetof(RefBoxData, m_uintTag) == 52);

bool read_case(std::istream& stream, ControllerInput& input)
{
    CaseFile::Reader file(stream);
    CaseFile::walk_case(file, input);
    std::uint32_t length = 0;
    file.values(length);
    if (length > kLongestCompletionPath)
        return false;
    try {
        input.m_fpCompletionFile.Set(file.text_of_length(length));
    } catch (const std::out_of_range&) { // the path collapses to nothing, such as "a/.."
        return false;
    }
    return !stream.fail();
}

bool write_case(std::ostream& stream, const ControllerInput& input)
{
    CaseFile::Writer file(stream);
    CaseFile::walk_case(file, input);
    const std::string path = input.m_fpCompletionFile.Get();
    if (path.size() > kLongestCompletionPath)
        return false;
    file.short_text(path);
    return !stream.flush().fail();
}

bool ControllerInput::Read(const Tavro::FilePath& file)
{
    std::ifstream stream(file.Get(), std::ios::binary);
    return stream.good() && read_case(stream, *this);
}

bool ControllerInput::Write(const Tavro::FilePath& file) const
{
    std::ofstream stream(file.Get(), std::ios::binary);
    return stream.good() && write_case(stream, *this);
}

} // namespace VRK
