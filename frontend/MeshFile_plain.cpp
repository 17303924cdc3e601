// SPDX-License-Identifier: Apache-2.0
// For systems without the mesh library.
#include "frontend/MeshFile.h"

#include "frontend/PlainMesh.h"

#include <fstream>
#include <iterator>

namespace Frontend {

std::string read_mesh_file(const std::string& path, std::vector<Tavro::Facet<double, 3, 3>>& facets)
{
    std::ifstream file(path, std::ios::binary);
    const std::string bytes { std::istreambuf_iterator<char>(file), {} };
    if (file.bad() || !file.is_open())
        return "it cannot be opened, or not be read to its end";
    const char last = path.empty() ? ' ' : path.back();
    return last == 'j' || last == 'J' ? read_obj(bytes, facets) : read_stl(bytes, facets);
}

} // namespace Frontend
