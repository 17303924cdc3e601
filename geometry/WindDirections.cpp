// SPDX-License-Identifier: Apache-2.0
#include "geometry/WettedSides.h"

namespace Tavro {

namespace {

/// Which winding goes with that of a neighbour.
WindDirection continued(WindDirection direction, bool woundAlike)
{
    const bool stored = (direction == WindDirection::Stored) == woundAlike;
    return stored ? WindDirection::Stored : WindDirection::Reversed;
}

} // namespace

void WettedSurfaceMesh::SetConsistentWindDirections()
{
    MarkSurface();
    std::vector<WettedTriangle*> stack;
    const auto give = [&](WettedTriangle* triangle, WindDirection direction) {
        triangle->SetWindDirection(direction);
        stack.push_back(triangle);
    };
    for (WettedTriangle* first : WettedTrianglesInMapOrder()) {
        if (first->GetWindDirection() != WindDirection::Unset)
            continue;
        if (first->Separates()) {
            first->SetWindDirection(first->GetSideState(true) == SideState::Wetted
                    ? WindDirection::Stored
                    : WindDirection::Reversed);
            continue;
        }
        // Nothing tells which way is outward here: any will do, if neighbours agree.
        give(first, WindDirection::Stored);
        while (!stack.empty()) {
            const WettedTriangle* const triangle = stack.back();
            stack.pop_back();
            for (const MeshEdge* edge : triangle->m_apEdges) {
                if (edge->m_setTriangles.size() != 2)
                    continue;
                for (MeshTriangle* neighbour : edge->m_setTriangles) {
                    if (AsWetted(neighbour)->GetWindDirection() == WindDirection::Unset)
                        give(AsWetted(neighbour),
                            continued(triangle->GetWindDirection(),
                                WoundAlike(*triangle, *neighbour, *edge)));
                }
            }
        }
    }
}

} // namespace Tavro
