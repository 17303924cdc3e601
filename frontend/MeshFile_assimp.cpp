// SPDX-License-Identifier: Apache-2.0
// The one source that knows the mesh library.
#include "frontend/MeshFile.h"

#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>

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

} // namespace

std::string read_mesh_file(const std::string& path, Facets& facets)
{
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
