// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "geometry/TriangleMesh.h"

#include <cstdint>

namespace Tavro {

/// What is known of one side of a triangle.
enum class SideState : unsigned char { Unmarked = 0, Dry = 1, Wetted = 2 };

/// Which winding of a triangle points outward.
enum class WindDirection : unsigned char { Unset = 0, Stored = 1, Reversed = 2 };

/// A triangle with a state for each side. The positive side is the one towards which the right-hand
/// normal of the stored vertex order points.
struct WettedTriangle : MeshTriangle {
    using MeshTriangle::MeshTriangle;

    [[nodiscard]] SideState GetSideState(bool positive) const
    {
        return static_cast<SideState>(Field(positive ? kPositive : kNegative));
    }
    void SetSideState(bool positive, SideState state)
    {
        SetField(positive ? kPositive : kNegative, static_cast<unsigned char>(state));
    }
    [[nodiscard]] WindDirection GetWindDirection() const
    {
        return static_cast<WindDirection>(Field(kWind));
    }
    void SetWindDirection(WindDirection direction)
    {
        SetField(kWind, static_cast<unsigned char>(direction));
    }
    [[nodiscard]] bool HasWettedSide() const
    {
        return GetSideState(true) == SideState::Wetted || GetSideState(false) == SideState::Wetted;
    }
    /// Whether both states are set and differ.
    [[nodiscard]] bool Separates() const
    {
        return GetSideState(true) != SideState::Unmarked
            && GetSideState(false) != SideState::Unmarked
            && GetSideState(true) != GetSideState(false);
    }

    /// Three fields of two bits, from the lowest: positive side, negative side, wind direction. The
    /// upper two bits belong to nobody and are kept.
    unsigned char m_ucFlags = 0;
    std::int32_t m_iSurface = -1; ///< number of its connected surface; -1: none yet

private:
    static constexpr unsigned int kPositive = 0;
    static constexpr unsigned int kNegative = 2;
    static constexpr unsigned int kWind = 4;
    static constexpr unsigned int kFieldMask = 3;

    [[nodiscard]] unsigned int Field(unsigned int shift) const
    {
        return static_cast<unsigned int>(m_ucFlags) >> shift & kFieldMask;
    }
    void SetField(unsigned int shift, unsigned int value)
    {
        m_ucFlags = static_cast<unsigned char>(
            (static_cast<unsigned int>(m_ucFlags) & ~(kFieldMask << shift)) | value << shift);
    }
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // as for `TriangleMesh`

/// A mesh whose triangles know on which sides outside air reaches them.
class WettedSurfaceMesh // NOLINT(cppcoreguidelines-virtual-class-destructor): as its base
    : public TriangleMesh {
public:
    WettedSurfaceMesh() = default;
    ~WettedSurfaceMesh();
    WettedSurfaceMesh(const WettedSurfaceMesh&) = delete;
    WettedSurfaceMesh& operator=(const WettedSurfaceMesh&) = delete;
    WettedSurfaceMesh(WettedSurfaceMesh&&) = delete;
    WettedSurfaceMesh& operator=(WettedSurfaceMesh&&) = delete;

    /// Makes a `WettedTriangle` with its flags cleared and no surface number.
    [[nodiscard]] MeshTriangle* CreateTriangle(MeshVertex* v0, MeshVertex* v1, MeshVertex* v2,
        MeshEdge* e0, MeshEdge* e1, MeshEdge* e2) override;
    void DestroyTriangle(MeshTriangle* triangle) override;

    /// As that of `TriangleMesh`; what was marked must be marked anew.
    MeshTriangle* AddTriangle(
        const Vector<double, 3>& a, const Vector<double, 3>& b, const Vector<double, 3>& c);

    /// Decides for both sides of each triangle whether outside air reaches it, surface by surface
    /// from the far end of x inward. Nothing to do if no triangle was added since the last time.
    void MarkSurface();
    /// Marks, and gives each triangle without a wind direction one: outward where it separates air
    /// from what is dry, else that of its neighbours as far as edges of two triangles lead. Wind
    /// directions that are set stay, also over a new marking.
    void SetConsistentWindDirections();

    // The steps of these two, each for itself.

    /// Makes all sides unmarked and takes all surface numbers away; wind directions stay.
    void InitializeTriangles();
    /// Numbers the triangles without a surface by what edges connect, from 0 in map order. How many
    /// surfaces got a number.
    unsigned int IdentifyConnectedSurfaces();
    /// Wets all that air reaches from the outer side of a triangle, around edges and over rims.
    /// The outer side is the one that faces growing x.
    static void TraverseConnectedSurface(WettedTriangle* start);
    /// Of the triangles whose positive side is unmarked, the one that faces outward most at the
    /// vertex of greatest x. Null if there is none, or none whose directions are numbers.
    [[nodiscard]] WettedTriangle* GetUnmarkedOuterTriangle() const;
    /// The triangle met first when one turns about an edge of the triangle, away from it on its
    /// positive or negative side; the triangle itself at a free edge. Null if, of several, none has
    /// a normal.
    [[nodiscard]] static WettedTriangle* GetAdjacentTriangleOnSide(
        const WettedTriangle* triangle, bool positive, const MeshEdge* edge);
    /// Whether the triangles that separate enclose the position: a ray towards growing x meets an
    /// odd number of them.
    [[nodiscard]] bool IsVertexInternal(const Vector<double, 3>& position) const;

    /// In lexicographic order of their vertices. Valid until the next triangle is added, and sorted
    /// only once until then.
    [[nodiscard]] std::span<WettedTriangle* const> WettedTrianglesInMapOrder() const;

    bool m_bSurfaceMarked = false;

private:
    Arena<WettedTriangle> m_arenaTriangles;
    mutable std::vector<WettedTriangle*> m_vecInMapOrder; ///< too short if triangles were added
};

#pragma GCC diagnostic pop

} // namespace Tavro
