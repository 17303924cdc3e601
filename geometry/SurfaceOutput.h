// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/FacetSurface.h"
#include "geometry/RefPtr.h"
#include "geometry/ValueTypes.h"
#include "tavrobase/FilePath.h"

#include <string>
#include <utility>
#include <vector>

/// Surfaces as files. Each surface is moved by its matrix, and each facet becomes the fan of
/// triangles (v0, v[i-1], v[i]). All files replace what was there; one that could not be written
/// whole stays as far as it went.
///
/// They are true on success. Else `error` says what failed: "Could not open file.", "Could not
/// write file." and, for STL, "Unable to write to file." or "Unable to write facets to file.";
/// binary forms on a machine with unknown number formats give the text of `BinaryFileIO` and leave
/// the file alone. Bytes do not depend on the locale. Files of other number types do not exist:
/// T is double.
namespace Tavro {

/// Surfaces and where each stands; an empty holder counts as a surface without vertices.
template <typename T>
using PlacedSurfaces = std::vector<std::pair<RefPtr<FacetSurface<T, 3>>, Matrix44<T>>>;

/// What `OutputToFile_P3D` takes; other bits do not matter.
enum P3DFlags : unsigned int {
    P3DUnstructured = 0x80000000U, ///< must be set
    P3DBinary = 0x00000001U, ///< else text
    P3DRefused = 0x00000008U, ///< must be clear
    P3DSingleZone = 0x00000010U, ///< else one zone for each surface
};

/// Writes the P3D form that the flags ask for. With flags that ask for no form of ours the error
/// text is cleared and the result is false.
template <typename T = double>
[[nodiscard]] bool OutputToFile_P3D(const FilePath& path, unsigned int flags,
    const PlacedSurfaces<T>& surfaces, std::string& error);

/// Text, a zone for each surface.
template <typename T = double>
[[nodiscard]] bool OutputToFile_P3D_ASC_VRK_MZ(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error);

/// Text, all surfaces in one zone.
template <typename T = double>
[[nodiscard]] bool OutputToFile_P3D_ASC_VRK_SZ(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error);

/// Binary without record markers, a zone for each surface.
template <typename T = double>
[[nodiscard]] bool OutputToFile_P3D_BIN_VRK_MZ(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error);

/// Binary without record markers, all surfaces in one zone.
template <typename T = double>
[[nodiscard]] bool OutputToFile_P3D_BIN_VRK_SZ(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error);

/// Text; the solid has the file's name without extension. The error text is cleared first. Facets
/// with vertex numbers that their surface does not have cannot be written.
template <typename T = double>
[[nodiscard]] bool OutputToFile_STL_ASCII(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error);

/// Binary, in single precision; the header holds the file's name as far as it fits. Facets with
/// vertex numbers that their surface does not have cannot be written.
template <typename T = double>
[[nodiscard]] bool OutputToFile_STL_Binary(
    const FilePath& path, const PlacedSurfaces<T>& surfaces, std::string& error);

} // namespace Tavro
