// SPDX-License-Identifier: Apache-2.0
#include "case/SlvrRot.h"

#include "case/Card.h"
#include "case/Column.h"

#include <iomanip>
#include <ostream>
#include <string>
#include <vector>

namespace {

using VRK::ControllerInput;
using VRK::entry;
using VRK::RotorData;
using VRK::Card::fixed;
using VRK::Card::general;
using VRK::Card::logical;

using Column = std::vector<double>;

// Every row starts with its number, left-justified. From 10 on no blank is left behind it.
constexpr int kRowNumberWidth = 2;
constexpr int kHarmonicWidth = 13;
constexpr int kRadiusWidth = 8;

void format_heading(std::ostream& card, const std::string& rule, const std::string& title)
{
    card << "#\n" << rule << '\n' << "# " << title << '\n' << rule << '\n' << "#\n";
}

constexpr const char* kTableRule = "# -------------------------------------------------";

void format_row_number(std::ostream& card, std::size_t i)
{
    card << std::left << std::setw(kRowNumberWidth) << i + 1;
}

void format_size(std::ostream& card, int columns, std::size_t rows)
{
    card << "# Number of Columns\n" << columns << '\n' << "# Number of Rows\n" << rows << '\n';
}

void format_application(std::ostream& card, const ControllerInput& input)
{
    format_heading(card, "# --------------------------", "Application: LPROP, LHAWT");
    card << (input.m_bLHAWT ? ".FALSE.,.TRUE." : ".TRUE.,.FALSE.") << '\n';

    format_heading(card, "# -----------------", "Number of Rotors");
    card << input.m_vecRotors.size() << '\n';
}

void format_main_parameters(std::ostream& card, const std::string& title, const RotorData& rotor)
{
    card << "# Is " << title << "?\n"
         << "#.TRUE.\n";
    format_heading(card, "# --------------------------", title + " - Main Parameters");
    card << "# Rotor Name\n"
         << '\'' << rotor.m_strName << "'\n"
         << "# Rotor Model Rsteady (TRUE : steady, FALSE: Unsteady)\n"
         << logical(!rotor.m_bUnsteady) << '\n'
         << "# Omega Clockwise Rotation?\n"
         << logical(rotor.m_bClockwise) << '\n'
         << "# Flapping?\n"
         << logical(rotor.m_bFlapping) << '\n'
         << "# Flap Geometry Correction?\n"
         << logical(rotor.m_bFlapping && rotor.m_bFlapGeomCorrection) << '\n'
         << "# Cyclic Pitch?\n"
         << logical(rotor.m_bCyclicPitch) << '\n'
         << "# Tip Correction?\n"
         << logical(rotor.m_bTipCorrection) << '\n'
         << "# Number of Blades:\n"
         << rotor.m_uintBlades << '\n'
         << "# Number of Source Locations on Radius:\n"
         << rotor.m_uintSourceLocations << '\n'
         << "# Number of Azimuth Locations:\n"
         << rotor.m_uintAzimuth << '\n'
         << fixed << "# Rotor Radius (R):\n"
         << rotor.m_dRadius << '\n'
         << "# Hub Radius (as r/R):\n"
         << rotor.m_dHubRadius << '\n'
         << "# Hinge Offset (as r/R):\n"
         << rotor.m_dHingeOffset << '\n'
         << "# Tip Speed:\n"
         << rotor.m_dTipSpeed << '\n'
         << "# Tip Correction (as r/R):\n"
         << rotor.m_dTipCorrectionRadius << '\n'
         << "# Reference Twist:\n"
         << rotor.m_dReferenceTwist << '\n'
         << "# Pitch Angle (Up +ve):\n"
         << rotor.m_dPitchAngle << '\n'
         << "# Bank Angle (Right +ve):\n"
         << rotor.m_dBankAngle << '\n'
         << "# Cone (Angle):\n"
         << rotor.m_dCone << '\n'
         << "# Collective Pitch (Angle):\n"
         << rotor.m_dCollective << '\n'
         << general;
}

void format_harmonics(
    std::ostream& card, const std::string& title, const Column& cosine, const Column& sine)
{
    format_heading(card, kTableRule, title);
    format_size(card, 2, cosine.size());
    card << "# Cosine Coef.(A),   SineCoef.(B)\n";
    for (std::size_t i = 0; i < cosine.size(); ++i) {
        format_row_number(card, i);
        card << fixed << std::setw(kHarmonicWidth) << cosine[i] << "      " << entry(sine, i)
             << '\n';
    }
    card << general;
}

struct DataTable {
    const char* m_question;
    const char* m_head;
    const char* m_gap; ///< between the two values of a row
};

constexpr DataTable kChordTable { "# Is 'r/R, Chord/Radius table provided?", // its quote stays open
    "#    r/R,         Chord/Radius", "       " };
constexpr DataTable kDeflTable { "# Is 'r/R, Deflection' table provided?",
    "#    r/R,         Deflection", "        " };
constexpr DataTable kTwistTable { "# Is 'r/R, Twist' table provided?", //
    "#    r/R,         Twist", "          " };
constexpr DataTable kInplaneTable { "# Is 'r/R, Inplane Defl' table provided?",
    "#    r/R,         Inplane Defl", "        " };

/// The rows are there whether or not the table counts as provided.
void format_data_table(std::ostream& card, const DataTable& table, bool provided,
    const Column& radius, const Column& value)
{
    card << table.m_question << '\n' << logical(provided) << '\n';
    format_size(card, 2, radius.size());
    card << table.m_head << '\n';
    for (std::size_t i = 0; i < radius.size(); ++i) {
        format_row_number(card, i);
        card << "   " << fixed << std::setw(kRadiusWidth) << radius[i] << table.m_gap
             << entry(value, i) << '\n';
    }
    card << general;
}

void format_data_points(std::ostream& card, const std::string& title, const RotorData& rotor)
{
    format_heading(card, kTableRule, title + " Data Points");
    format_data_table(card, kChordTable, rotor.m_bChordTable, rotor.m_vecChordR, rotor.m_vecChord);
    card << "#\n";
    format_data_table(card, kDeflTable, rotor.m_bDeflTable, rotor.m_vecDeflR, rotor.m_vecDefl);
    card << "#\n";
    format_data_table(card, kTwistTable, rotor.m_bTwistTable, rotor.m_vecTwistR, rotor.m_vecTwist);
    card << "#\n";
    format_data_table(
        card, kInplaneTable, rotor.m_bInplaneTable, rotor.m_vecInplaneR, rotor.m_vecInplane);
}

void format_reference_radii(std::ostream& card, const std::string& title, const Column& radius)
{
    format_heading(card, kTableRule, title + " Reference Radius Locations (r/R) (for Output)");
    format_size(card, 1, radius.size());
    card << "# Reference Radius (r/R)\n";
    for (std::size_t i = 0; i < radius.size(); ++i) {
        format_row_number(card, i);
        card << "       " << fixed << std::setw(kRadiusWidth) << radius[i] << '\n';
    }
    card << general;
}

void format_rotor(std::ostream& card, const std::string& title, const RotorData& rotor)
{
    format_heading(card, "# --------", title);
    format_main_parameters(card, title, rotor);
    format_harmonics(card, title + " Harmonic Cyclic Pitch (+ve) Coefficients",
        rotor.m_vecCyclicCos, rotor.m_vecCyclicSin);
    format_harmonics(
        card, title + " Harmonic Flapping Coefficients", rotor.m_vecFlapCos, rotor.m_vecFlapSin);
    format_data_points(card, title, rotor);
    format_reference_radii(card, title, rotor.m_vecRefRadius);
}

void format_trim(std::ostream& card, const ControllerInput& input)
{
    format_heading(card, "# ----------------", "Trim Parameters");
    card << "# Is there Trim?\n"
         << logical(input.m_bTrim) << '\n'
         << "# Trim Period (Num. of iters. between Trims):\n"
         << input.m_uintTrimPeriod << '\n'
         << "# Trim Start Iteration:\n"
         << input.m_uintTrimStart << '\n'
         << "# Trim End Iteration:\n"
         << input.m_uintTrimEnd << '\n';
    for (std::size_t i = 0; i < input.m_vecRotors.size(); ++i) {
        card << "# Rotor " << i + 1 << " Required Thrust Coefficient:\n"
             << input.m_vecRotors[i].m_dRequiredCT << '\n';
    }
    card << "# Maximum Collective Change:\n"
         << input.m_dTrimMaxCollectiveChange << '\n'
         << "# Trim Tolerence:\n" // spelt as the rotor program has always had it
         << input.m_dTrimTolerance << '\n';
}

/// Leaves the fixed form behind if it wrote a row; the centre coordinates come out in it.
void format_airfoil_tables(std::ostream& card, const std::string& title, const RotorData& rotor)
{
    format_heading(card, "# -----------------------------", title + " Airfoil Tables (AFT)");
    format_size(card, 2, rotor.m_vecAftSchedule.size());
    card << "# AFT Schedules (r/R), Airfoil Tables (AFT) Files\n";
    for (std::size_t i = 0; i < rotor.m_vecAftSchedule.size(); ++i) {
        format_row_number(card, i);
        card << "   " << fixed << std::setw(kRadiusWidth) << rotor.m_vecAftSchedule[i]
             << "          '" << entry(rotor.m_vecAftFile, i) << "'\n";
    }
}

void format_center(std::ostream& card, const std::string& title, const RotorData& rotor)
{
    format_heading(card, "# ---------------------------", title + " Center coordinates");
    card << rotor.m_adCenter[0] << ' ' << rotor.m_adCenter[1] << ' ' << rotor.m_adCenter[2] << '\n';
}

/// Calls `format` with the title and the data of every rotor.
template <typename Format>
void for_each_rotor(std::ostream& card, const ControllerInput& input, Format format)
{
    for (std::size_t i = 0; i < input.m_vecRotors.size(); ++i)
        format(card, "Rotor " + std::to_string(i + 1), input.m_vecRotors[i]);
}

} // namespace

void format_slvr_rot(std::ostream& card, const VRK::ControllerInput& input)
{
    VRK::Card::begin(card);
    format_application(card, input);
    for_each_rotor(card, input, format_rotor);
    format_trim(card, input);
    for_each_rotor(card, input, format_airfoil_tables);
    for_each_rotor(card, input, format_center);
}

void write_slvr_rot(const VRK::ControllerInput& input)
{
    auto card = VRK::Card::file(VRK::Card::path(input.m_strCaseName + ".SlvrRot"));
    format_slvr_rot(card, input);
}
