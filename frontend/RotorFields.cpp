// SPDX-License-Identifier: Apache-2.0
#include "frontend/CaseFields.h"

namespace Frontend {

namespace {

Fields airfoil_fields(VRK::RotorData& rotor, std::size_t i)
{
    return {
        { "r", &rotor.m_vecAftSchedule[i], "r/R", "up to where the table holds", kShare, 1.0 },
        { "file", &rotor.m_vecAftFile[i], "", "airfoil table, found from the directory of the case",
            kAny, 0, true },
    };
}

} // namespace

Fields rotor_fields(VRK::RotorData& rotor)
{
    const auto resize = [&rotor](std::size_t size) {
        rotor.m_vecAftSchedule.resize(size);
        rotor.m_vecAftFile.resize(size);
    };
    double* center = rotor.m_adCenter;
    return {
        { "name", &rotor.m_strName, "", "name of the rotor", kAny, 0, true },
        { "center", std::vector<double*> { center, center + 1, center + 2 }, "m",
            "centre of the rotor x, y, z", kAny, 0, true },
        { "radius", &rotor.m_dRadius, "m", "rotor radius R", kPositive, 0, true },
        { "tip_speed", &rotor.m_dTipSpeed, "m/s", "speed of the blade tips", kPositive, 0, true },
        { "blades", &rotor.m_uintBlades, "", "number of blades", kAtLeastOne, 0, true },
        { "clockwise", &rotor.m_bClockwise, "", "it turns clockwise" },
        { "unsteady", &rotor.m_bUnsteady, "", "each blade by itself, else their average" },
        { "source_locations", &rotor.m_uintSourceLocations, "", "source locations along the radius",
            kAtLeastOne, 40 },
        { "azimuth_locations", &rotor.m_uintAzimuth, "", "locations around the disk", kAtLeastOne,
            72 },
        { "hub_radius", &rotor.m_dHubRadius, "r/R", "where the blade begins", kShare },
        { "hinge_offset", &rotor.m_dHingeOffset, "r/R", "flapping hinge", kShare },
        { "tip_correction", &rotor.m_bTipCorrection, "", "lose lift at the tip" },
        { "tip_correction_radius", &rotor.m_dTipCorrectionRadius, "r/R", "from where on", kShare,
            1.0 },
        { "pitch_angle", &rotor.m_dPitchAngle, "deg", "of the disk; up is positive" },
        { "bank_angle", &rotor.m_dBankAngle, "deg", "of the disk; right is positive" },
        { "cone", &rotor.m_dCone, "deg", "coning angle" },
        { "collective", &rotor.m_dCollective, "deg", "collective pitch" },
        { "reference_twist", &rotor.m_dReferenceTwist, "deg", "reference twist" },
        { "required_ct", &rotor.m_dRequiredCT, "", "thrust coefficient that a trim aims at" },
        { "cyclic_pitch", &rotor.m_bCyclicPitch, "", "the table `cyclic` counts" },
        { "cyclic", TwoColumns { &rotor.m_vecCyclicCos, &rotor.m_vecCyclicSin }, "deg",
            "harmonic coefficients, rows of A and B" },
        { "flapping", &rotor.m_bFlapping, "", "the table `flap` counts" },
        { "flap_geometry", &rotor.m_bFlapGeomCorrection, "",
            "correct the geometry for flapping, too" },
        { "flap", TwoColumns { &rotor.m_vecFlapCos, &rotor.m_vecFlapSin }, "deg",
            "harmonic coefficients, rows of A and B" },
        { "chord_table", &rotor.m_bChordTable, "", "the table `chord` counts" },
        { "chord", TwoColumns { &rotor.m_vecChordR, &rotor.m_vecChord }, "r/R, chord/R",
            "chord along the blade" },
        { "twist_table", &rotor.m_bTwistTable, "", "the table `twist` counts" },
        { "twist", TwoColumns { &rotor.m_vecTwistR, &rotor.m_vecTwist }, "r/R, deg",
            "twist along the blade" },
        { "deflection_table", &rotor.m_bDeflTable, "", "the table `deflection` counts" },
        { "deflection", TwoColumns { &rotor.m_vecDeflR, &rotor.m_vecDefl }, "r/R, deflection",
            "deflection along the blade" },
        { "inplane_table", &rotor.m_bInplaneTable, "", "the table `inplane` counts" },
        { "inplane", TwoColumns { &rotor.m_vecInplaneR, &rotor.m_vecInplane }, "r/R, deflection",
            "deflection in the plane of the disk" },
        { "output_radii", &rotor.m_vecRefRadius, "r/R", "where the output is given" },
        { "airfoil",
            ListOfTables { [&rotor] { return rotor.m_vecAftFile.size(); }, resize,
                [&rotor](std::size_t i) { return airfoil_fields(rotor, i); } },
            "", "airfoil tables, from the root outwards" },
    };
}

} // namespace Frontend
