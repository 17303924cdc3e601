// SPDX-License-Identifier: Apache-2.0
#include "geometry/SurfaceFile.h"
#include "geometry/SurfaceOutput.h"
#include "tavrobase/BinaryFileIO.h"

namespace Tavro {

namespace {

using SurfaceFile::Zone;

// The two forms hold the same values in the same order. Each form is a sink that says how an
// integer record, a list of reals and a list of tags look; the layouts below say what comes when.

class TextForm {
public:
    explicit TextForm(std::ofstream& stream)
        : m_stream(stream)
    {
    }
    void Integer(std::size_t value) const
    {
        SurfaceFile::PutNumber(m_stream, value);
        m_stream.put('\n');
    }
    void Integers(std::size_t a, std::size_t b, std::size_t c) const
    {
        SurfaceFile::PutNumber(m_stream, a);
        m_stream.put(' ');
        SurfaceFile::PutNumber(m_stream, b);
        m_stream.put(' ');
        SurfaceFile::PutNumber(m_stream, c);
        m_stream.put('\n');
    }
    void ListedReal(double value) const
    {
        constexpr int kStreamPrecision = 6;
        SurfaceFile::PutNumber(m_stream, value, std::chars_format::general, kStreamPrecision);
        m_stream.put(' ');
    }
    void ListedTag() const { m_stream.write("1 ", 2); }
    void EndList() const { m_stream.put('\n'); }

private:
    std::ofstream& m_stream;
};

class BinaryForm {
public:
    explicit BinaryForm(std::ofstream& stream)
        : m_stream(stream)
    {
    }
    void Integer(std::size_t value) const
    {
        // The stream remembers a failure, and its state is looked at in the end.
        (void)BinaryFileIO::WriteLittleEndian(m_stream, static_cast<int>(value));
    }
    void Integers(std::size_t a, std::size_t b, std::size_t c) const
    {
        Integer(a);
        Integer(b);
        Integer(c);
    }
    void ListedReal(double value) const
    {
        (void)BinaryFileIO::WriteIEEE(m_stream, value); // looked at in the end
    }
    void ListedTag() const { Integer(1); }
    void EndList() const { }

private:
    std::ofstream& m_stream;
};

template <typename Form>
void put_coordinates(const Form& form, const Zone& zone, std::size_t axis)
{
    for (const SurfaceFile::Point& point : zone.m_vecPoints)
        form.ListedReal(point[axis]);
}

/// `offset`: vertices that stand before those of the zone.
template <typename Form>
void put_triangles(const Form& form, const Zone& zone, std::size_t offset)
{
    const std::size_t first = offset + 1; // the file counts from 1
    (void)SurfaceFile::ForEachTriangle(zone, [&](std::size_t v0, std::size_t v1, std::size_t v2) {
        form.Integers(first + v0, first + v1, first + v2);
        return true; // so the walk cannot end early
    });
}

template <typename Form>
void put_tags(const Form& form, std::size_t triangles)
{
    for (std::size_t i = 0; i < triangles; ++i)
        form.ListedTag();
    form.EndList();
}

template <typename Form>
void put_multiple_zones(const Form& form, const std::vector<Zone>& zones)
{
    form.Integer(zones.size());
    for (const Zone& zone : zones)
        form.Integers(zone.m_vecPoints.size(), SurfaceFile::CountTriangles(zone), 0);
    for (const Zone& zone : zones) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            put_coordinates(form, zone, axis);
            form.EndList();
        }
        put_triangles(form, zone, 0);
        put_tags(form, SurfaceFile::CountTriangles(zone));
    }
}

template <typename Form>
void put_single_zone(const Form& form, const std::vector<Zone>& zones)
{
    std::size_t points = 0;
    std::size_t triangles = 0;
    for (const Zone& zone : zones) {
        points += zone.m_vecPoints.size();
        triangles += SurfaceFile::CountTriangles(zone);
    }
    form.Integers(points, triangles, 0);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (const Zone& zone : zones)
            put_coordinates(form, zone, axis);
        form.EndList();
    }
    std::size_t offset = 0;
    for (const Zone& zone : zones) {
        put_triangles(form, zone, offset);
        offset += zone.m_vecPoints.size();
    }
    put_tags(form, triangles);
}

template <typename Form>
bool write_file(const FilePath& path, const PlacedSurfaces<double>& surfaces, std::string& error,
    void (*put)(const Form&, const std::vector<Zone>&))
{
    std::ofstream stream;
    if (!SurfaceFile::Open(stream, path, error))
        return false;
    put(Form(stream), SurfaceFile::PlaceSurfaces(surfaces));
    stream.close(); // what is still in the buffer may fail too
    if (!stream)
        error = "Could not write file.";
    return stream.good();
}

} // namespace

template <typename T>
bool OutputToFile_P3D_ASC_VRK_MZ(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error)
{
    return write_file<TextForm>(path, surfaces, error, put_multiple_zones);
}

template <typename T>
bool OutputToFile_P3D_ASC_VRK_SZ(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error)
{
    return write_file<TextForm>(path, surfaces, error, put_single_zone);
}

template <typename T>
bool OutputToFile_P3D_BIN_VRK_MZ(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error)
{
    return SurfaceFile::PrepareBinary(error)
        && write_file<BinaryForm>(path, surfaces, error, put_multiple_zones);
}

template <typename T>
bool OutputToFile_P3D_BIN_VRK_SZ(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error)
{
    return SurfaceFile::PrepareBinary(error)
        && write_file<BinaryForm>(path, surfaces, error, put_single_zone);
}

template <typename T>
bool OutputToFile_P3D(
    const FilePath& path, unsigned int flags, const PlacedSurfaces<T>& surfaces, std::string& error)
{
    if ((flags & P3DUnstructured) == 0 || (flags & P3DRefused) != 0) {
        error.clear();
        return false;
    }
    if ((flags & P3DBinary) != 0)
        return (flags & P3DSingleZone) != 0 ? OutputToFile_P3D_BIN_VRK_SZ(path, surfaces, error)
                                            : OutputToFile_P3D_BIN_VRK_MZ(path, surfaces, error);
    return (flags & P3DSingleZone) != 0 ? OutputToFile_P3D_ASC_VRK_SZ(path, surfaces, error)
                                        : OutputToFile_P3D_ASC_VRK_MZ(path, surfaces, error);
}

template bool OutputToFile_P3D<double>(
    const FilePath&, unsigned int, const PlacedSurfaces<double>&, std::string&);
template bool OutputToFile_P3D_ASC_VRK_MZ<double>(
    const FilePath&, const PlacedSurfaces<double>&, std::string&);
template bool OutputToFile_P3D_ASC_VRK_SZ<double>(
    const FilePath&, const PlacedSurfaces<double>&, std::string&);
template bool OutputToFile_P3D_BIN_VRK_MZ<double>(
    const FilePath&, const PlacedSurfaces<double>&, std::string&);
template bool OutputToFile_P3D_BIN_VRK_SZ<double>(
    const FilePath&, const PlacedSurfaces<double>&, std::string&);

} // namespace Tavro
