// SPDX-License-Identifier: Apache-2.0
#include "airfoil/AirfoilTable.h"
#include "airfoil/FieldText.h"

#include "tavrobase/StringUtilities.h"

namespace Tavro {

namespace {

constexpr std::size_t kHeaderWidth = 70;
constexpr const char* kHeaderKind = "  2"; // fixed by the rotor program's format
constexpr int kFirstOfTwoDigits = 10;

} // namespace

int AirfoilTable::readInputCard(const FilePath& path, std::string& errors, bool bNoHeader)
{
    m_bValid = false;
    if (!path.Exists() || path.IsDirectory()) {
        errors = "Unable to find airfoil table: " + path.Get();
        return NotFound;
    }
    std::ifstream stream(path.Get());
    return readFromSingleInputFile(stream, errors, bNoHeader);
}

int AirfoilTable::readFromSingleInputFile(
    std::ifstream& stream, std::string& errors, bool bNoHeader)
{
    m_bValid = false;
    if (!stream.good())
        return Failed;
    unsigned long long lineNumber = 0;
    m_header.clear();
    if (!bNoHeader) {
        (void)FieldText::read_line(stream, m_header); // without it the next line is missing too
        ++lineNumber;
    }
    const bool control = m_control.readFromFile(stream);
    ++lineNumber;
    if (!control) {
        errors += "Airfoil Table Validation Error: Unable to read title and control line, line "
            + NumToString(lineNumber) + "\n";
        return Failed;
    }
    // All three in any case, so that one run shows all faults.
    const bool lift = m_lift.readFromFile(stream, m_control, 0, lineNumber, errors, *this);
    const bool drag = m_drag.readFromFile(stream, m_control, 1, lineNumber, errors, *this);
    const bool moment = m_moment.readFromFile(stream, m_control, 2, lineNumber, errors, *this);
    m_bValid = lift && drag && moment;
    return m_bValid ? Good : Failed;
}

int AirfoilTable::writeInputCard(const FilePath& path, int n, bool bNoHeader) const
{
    std::ofstream stream(path.Get(), std::ios::trunc | std::ios::binary);
    if (writeToSingleInputFile(stream, n, bNoHeader) != Good)
        return Failed;
    stream.close(); // a full disk may show only here
    return stream.fail() ? Failed : Good;
}

int AirfoilTable::writeToSingleInputFile(std::ofstream& stream, int n, bool bNoHeader) const
{
    if (!m_bValid || !stream.good())
        return Failed;
    if (!bNoHeader) {
        const std::string header
            = FieldText::left_justified(m_header.substr(0, kHeaderWidth), kHeaderWidth)
            + kHeaderKind + NumToString(n) + "\n";
        stream.write(header.data(), static_cast<std::streamsize>(header.size()));
    }
    const bool good = m_control.writeToFile(stream, "") && m_lift.writeToFile(stream)
        && m_drag.writeToFile(stream) && m_moment.writeToFile(stream);
    return good ? Good : Failed;
}

std::string AirfoilTable::suffix(int n)
{
    return (n < kFirstOfTwoDigits ? "aftable" : "aftabl") + NumToString(n);
}

} // namespace Tavro
