// SPDX-License-Identifier: Apache-2.0
// The one source that knows the mesh library.
#include "frontend/MeshFile.h"

#include "frontend/PlainMesh.h"
#include "frontend/TextFile.h"

#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace Frontend {

namespace {

using Facets = std::vector<Tavro::Facet<double, 3, 3>>;

void append(const aiMesh& mesh, Facets& facets)
{
    for (unsigned int i = 0; i < mesh.mNumFaces; ++i) {
        const aiFace& face = mesh.mFaces[i];
        if (face.mNumIndices != 3) // points and lines have no surface
            continue;
        Tavro::Facet<double, 3, 3> facet {};
        for (std::size_t k = 0; k < 3; ++k) {
            const aiVector3D& vertex = mesh.mVertices[face.mIndices[k]];
            facet[k] = { vertex.x, vertex.y, vertex.z };
        }
        facets.push_back(facet);
    }
}

/// The triangles of an STL text whose words have capitals, which the library does not take for one.
/// Nothing if the file is anything else.
std::optional<std::string> read_capitals(const std::string& path, Facets& facets)
{
    std::ifstream file(path, std::ios::binary);
    std::string bytes(1024, ' ');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    if (!is_stl_in_capitals(bytes))
        return std::nullopt;
    file.clear();
    bytes.append(std::istreambuf_iterator<char>(file), {});
    return file.bad() ? "it cannot be read to its end" : read_stl(bytes, facets);
}

} // namespace

std::string read_mesh_file(const std::string& path, Facets& facets)
{
    if (const auto reason = has_ending(path, ".stl") ? read_capitals(path, facets) : std::nullopt)
        return *reason;
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(path, aiProcess_Triangulate);
    if (scene == nullptr) {
        std::string reason = importer.GetErrorString();
        std::replace(reason.begin(), reason.end(), '\n', ' ');
        return reason.empty() ? "for no reason that the mesh library tells" : reason;
    }
    for (unsigned int i = 0; i < scene->mNumMeshes; ++i)
        append(*scene->mMeshes[i], facets);
    return "";
}

} // namespace Frontend
