// SPDX-License-Identifier: Apache-2.0
#include "geometry/SurfaceFile.h"

#include "tavrobase/BinaryFileIO.h"

#include <locale>

namespace Tavro::SurfaceFile {

std::vector<Zone> PlaceSurfaces(const PlacedSurfaces<double>& surfaces)
{
    std::vector<Zone> zones;
    zones.reserve(surfaces.size());
    for (const auto& [surface, matrix] : surfaces) {
        Zone& zone = zones.emplace_back();
        zone.m_pSurface = surface.Get();
        if (zone.m_pSurface == nullptr)
            continue;
        zone.m_vecPoints.reserve(zone.m_pSurface->m_vecVertices.size());
        for (const Point& vertex : zone.m_pSurface->m_vecVertices)
            zone.m_vecPoints.push_back(Multiply(matrix, vertex));
    }
    return zones;
}

std::size_t CountTriangles(const Zone& zone)
{
    std::size_t triangles = 0;
    (void)ForEachTriangle(zone, [&](std::uint32_t, std::uint32_t, std::uint32_t) {
        ++triangles;
        return true; // so the walk cannot end early
    });
    return triangles;
}

bool Open(std::ofstream& stream, const FilePath& path, std::string& error)
{
    stream.imbue(std::locale::classic());
    stream.open(path.Get(), std::ios::binary | std::ios::trunc);
    if (!stream)
        error = "Could not open file.";
    return stream.good();
}

bool PrepareBinary(std::string& error)
{
    if (BinaryFileIO::Initialize())
        return true;
    error = BinaryFileIO::InitializeErrorText();
    return false;
}

} // namespace Tavro::SurfaceFile
