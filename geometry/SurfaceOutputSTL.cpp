// SPDX-License-Identifier: Apache-2.0
#include "geometry/SurfaceFile.h"
#include "geometry/SurfaceOutput.h"
#include "tavrobase/BinaryFileIO.h"

#include <algorithm>

namespace Tavro {

namespace {

using SurfaceFile::Point;

constexpr const char* kHeaderFailed = "Unable to write to file.";
constexpr const char* kFacetsFailed = "Unable to write facets to file.";
constexpr std::size_t kBinaryHeaderSize = 80;

bool fail(std::string& error, const char* text)
{
    error = text;
    return false;
}

/// Calls `put(a, b, c)` with the corners of each triangle of all surfaces. False as soon as the
/// stream has failed, or if a corner does not exist.
template <typename Put>
bool put_facets(std::ofstream& stream, const PlacedSurfaces<double>& surfaces, const Put& put)
{
    const auto zones = SurfaceFile::PlaceSurfaces(surfaces);
    return std::all_of(zones.begin(), zones.end(), [&](const SurfaceFile::Zone& zone) {
        const std::vector<Point>& points = zone.m_vecPoints;
        return SurfaceFile::ForEachTriangle(
            zone, [&](std::size_t v0, std::size_t v1, std::size_t v2) {
                if (std::max({ v0, v1, v2 }) >= points.size())
                    return false;
                put(points[v0], points[v1], points[v2]);
                return stream.good();
            });
    });
}

void put_text_vertex(std::ostream& stream, const Point& point)
{
    stream << "        vertex";
    for (std::size_t axis = 0; axis < 3; ++axis) {
        constexpr int kDigitsAfterPoint = 6;
        stream.put(' ');
        SurfaceFile::PutNumber(
            stream, point[axis], std::chars_format::scientific, kDigitsAfterPoint);
    }
    stream.put('\n');
}

void put_binary_vector(std::ofstream& stream, const Point& vector)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        // The caller looks at the stream after each facet.
        (void)BinaryFileIO::WriteIEEE(stream, static_cast<float>(vector[axis]));
    }
}

std::string binary_header(const std::string& name)
{
    std::string header = "binary - " + name;
    header.resize(kBinaryHeaderSize, ' ');
    return header;
}

} // namespace

template <typename T>
bool OutputToFile_STL_ASCII(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error)
{
    error.clear();
    std::ofstream stream;
    if (!SurfaceFile::Open(stream, path, error))
        return false;

    const std::string name = path.GetJustName();
    stream << "solid " << name << '\n' << std::flush;
    if (!stream)
        return fail(error, kHeaderFailed);

    const bool whole
        = put_facets(stream, surfaces, [&](const Point& a, const Point& b, const Point& c) {
              stream << "facet normal 0.000000e+00 0.000000e+00 0.000000e+00\n"
                        "    outer loop\n";
              put_text_vertex(stream, a);
              put_text_vertex(stream, b);
              put_text_vertex(stream, c);
              stream << "    endloop\n"
                        "endfacet\n";
          });
    if (!whole)
        return fail(error, kFacetsFailed);
    stream << "endsolid " << name << '\n';
    stream.close(); // the last facets may still be in the buffer
    return stream || fail(error, kFacetsFailed);
}

template <typename T>
bool OutputToFile_STL_Binary(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error)
{
    std::ofstream stream;
    if (!SurfaceFile::PrepareBinary(error) || !SurfaceFile::Open(stream, path, error))
        return false;

    stream << binary_header(path.GetJustName());
    const auto countPosition = stream.tellp();
    unsigned int count = 0;
    if (!BinaryFileIO::WriteLittleEndian(stream, count) || !stream.flush())
        return fail(error, kHeaderFailed);

    const bool whole
        = put_facets(stream, surfaces, [&](const Point& a, const Point& b, const Point& c) {
              put_binary_vector(stream, Point { 0.0, 0.0, 0.0 });
              put_binary_vector(stream, a);
              put_binary_vector(stream, b);
              put_binary_vector(stream, c);
              constexpr unsigned short kNoAttributes = 0;
              // The stream is looked at after each facet.
              (void)BinaryFileIO::WriteLittleEndian(stream, kNoAttributes);
              ++count;
          });
    if (!whole)
        return fail(error, kFacetsFailed);
    stream.seekp(countPosition);
    (void)BinaryFileIO::WriteLittleEndian(stream, count); // looked at with what is in the buffer
    stream.close();
    return stream || fail(error, kFacetsFailed);
}

template bool OutputToFile_STL_ASCII<double>(
    const FilePath&, const PlacedSurfaces<double>&, std::string&);
template bool OutputToFile_STL_Binary<double>(
    const FilePath&, const PlacedSurfaces<double>&, std::string&);

} // namespace Tavro
