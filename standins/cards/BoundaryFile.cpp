// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/BoundaryFile.h"

#include "standins/cards/Lines.h"
#include "standins/cards/Numbers.h"

namespace Standins {

namespace {

constexpr int kPressure = -2;
constexpr int kVelocity = 0;
constexpr int kNoData = -5;

double read_number(Lines& lines)
{
    LineParts line(lines, "two blanks and " + std::string(Numbers::kGeneral));
    line.literal("  ");
    const double value = line.value(Numbers::general_of);
    line.end();
    return value;
}

BoundaryFace read_face(Lines& lines, const char* name)
{
    lines.literal("# " + std::string(name) + " Boundary");
    BoundaryFace face;
    LineParts line(lines, "two blanks and -2, 0 or -5");
    line.literal("  ");
    face.m_nId = line.value(Numbers::signed_of);
    line.end();
    if (face.m_nId == kPressure) {
        face.m_dPressure = read_number(lines);
    } else if (face.m_nId == kVelocity) {
        for (double& component : face.m_adVelocity)
            component = read_number(lines);
    } else if (face.m_nId != kNoData) {
        line.refuse();
    }
    return face;
}

} // namespace

BoundaryFile read_boundary_file(const std::string& path)
{
    constexpr const char* kFaces[] = { "X-min", "X-max", "Y-min", "Y-max", "Z-min", "Z-max" };
    Lines lines(path);
    BoundaryFile file;
    for (std::size_t i = 0; i < file.m_faces.size(); ++i)
        file.m_faces[i] = read_face(lines, kFaces[i]);
    lines.end();
    return file;
}

} // namespace Standins
