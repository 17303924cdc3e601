// SPDX-License-Identifier: Apache-2.0
#include "standins/cards/RotorCard.h"

#include "standins/cards/Lines.h"
#include "standins/cards/Numbers.h"

#include <algorithm>

namespace Standins {

namespace {

constexpr std::size_t kRowNumberWidth = 2;
constexpr std::size_t kHarmonicWidth = 13;
constexpr std::size_t kRadiusWidth = 8;
constexpr const char* kTableRule = "# -------------------------------------------------";

void heading(Lines& card, const std::string& rule, const std::string& title)
{
    card.literal("#");
    card.literal(rule);
    card.literal("# " + title);
    card.literal(rule);
    card.literal("#");
}

bool logical(Lines& card, const std::string& comment)
{
    card.literal(comment);
    return card.value(Numbers::logical_of, Numbers::kLogical);
}

std::uint32_t count(Lines& card, const std::string& comment)
{
    card.literal(comment);
    return card.value(Numbers::unsigned_of, Numbers::kUnsigned);
}

double fixed(Lines& card, const std::string& comment)
{
    card.literal(comment);
    return card.value(Numbers::fixed_of, Numbers::kFixed);
}

double general(Lines& card, const std::string& comment)
{
    card.literal(comment);
    return card.value(Numbers::general_of, Numbers::kGeneral);
}

/// Number of rows of a table with so many columns.
std::uint32_t read_size(Lines& card, const char* columns)
{
    card.literal("# Number of Columns");
    card.literal(columns);
    return count(card, "# Number of Rows");
}

/// A row from its number on, of which the rest is left to take.
LineParts read_row(Lines& card, std::uint32_t index, const std::string& form)
{
    const std::string number = std::to_string(index + 1);
    LineParts row(card, "row " + number + " of the table: " + form);
    row.literal(number);
    row.padding(number.size(), kRowNumberWidth);
    return row;
}

/// ".TRUE.,.FALSE." is the first application, ".FALSE.,.TRUE." the second.
bool read_application(Lines& card)
{
    heading(card, "# --------------------------", "Application: LPROP, LHAWT");
    const std::string expected = ".TRUE.,.FALSE. or .FALSE.,.TRUE.";
    const std::string_view flags = card.next(expected);
    if (flags != ".TRUE.,.FALSE." && flags != ".FALSE.,.TRUE.")
        card.refuse(expected);
    return flags == ".FALSE.,.TRUE.";
}

void read_main_parameters(Lines& card, const std::string& title, Rotor& rotor)
{
    card.literal("# Is " + title + "?");
    card.literal("#.TRUE.");
    heading(card, "# --------------------------", title + " - Main Parameters");
    card.literal("# Rotor Name");
    rotor.m_strName = card.quoted();
    rotor.m_bSteady = logical(card, "# Rotor Model Rsteady (TRUE : steady, FALSE: Unsteady)");
    rotor.m_bClockwise = logical(card, "# Omega Clockwise Rotation?");
    rotor.m_bFlapping = logical(card, "# Flapping?");
    rotor.m_bFlapGeomCorrection = logical(card, "# Flap Geometry Correction?");
    if (rotor.m_bFlapGeomCorrection && !rotor.m_bFlapping)
        card.refuse(".FALSE., as there is no flapping");
    rotor.m_bCyclicPitch = logical(card, "# Cyclic Pitch?");
    rotor.m_bTipCorrection = logical(card, "# Tip Correction?");
    rotor.m_uintBlades = count(card, "# Number of Blades:");
    rotor.m_uintSourceLocations = count(card, "# Number of Source Locations on Radius:");
    rotor.m_uintAzimuth = count(card, "# Number of Azimuth Locations:");
    rotor.m_dRadius = fixed(card, "# Rotor Radius (R):");
    rotor.m_dHubRadius = fixed(card, "# Hub Radius (as r/R):");
    rotor.m_dHingeOffset = fixed(card, "# Hinge Offset (as r/R):");
    rotor.m_dTipSpeed = fixed(card, "# Tip Speed:");
    rotor.m_dTipCorrectionRadius = fixed(card, "# Tip Correction (as r/R):");
    rotor.m_dReferenceTwist = fixed(card, "# Reference Twist:");
    rotor.m_dPitchAngle = fixed(card, "# Pitch Angle (Up +ve):");
    rotor.m_dBankAngle = fixed(card, "# Bank Angle (Right +ve):");
    rotor.m_dCone = fixed(card, "# Cone (Angle):");
    rotor.m_dCollective = fixed(card, "# Collective Pitch (Angle):");
}

RotorHarmonics read_harmonics(Lines& card, const std::string& title)
{
    heading(card, kTableRule, title);
    const std::uint32_t rows = read_size(card, "2");
    card.literal("# Cosine Coef.(A),   SineCoef.(B)");
    RotorHarmonics harmonics;
    for (std::uint32_t i = 0; i < rows; ++i) {
        // From row 10 on the first value touches the row number.
        LineParts row = read_row(card, i, "two numbers with six digits behind the point");
        harmonics.m_vecCos.push_back(row.padded(Numbers::fixed_of, kHarmonicWidth));
        row.literal("      ");
        harmonics.m_vecSin.push_back(row.value(Numbers::fixed_of));
        row.end();
    }
    return harmonics;
}

RotorTable read_table(Lines& card, const char* question, const char* head, std::size_t gap)
{
    RotorTable table;
    table.m_bProvided = logical(card, question);
    const std::uint32_t rows = read_size(card, "2");
    card.literal(head);
    for (std::uint32_t i = 0; i < rows; ++i) {
        LineParts row = read_row(card, i, "two numbers with six digits behind the point");
        row.literal("   ");
        table.m_vecFirst.push_back(row.padded(Numbers::fixed_of, kRadiusWidth));
        row.literal(std::string(gap, ' '));
        table.m_vecSecond.push_back(row.value(Numbers::fixed_of));
        row.end();
    }
    return table;
}

void read_data_points(Lines& card, const std::string& title, Rotor& rotor)
{
    heading(card, kTableRule, title + " Data Points");
    rotor.m_chord = read_table(
        card, "# Is 'r/R, Chord/Radius table provided?", "#    r/R,         Chord/Radius", 7);
    card.literal("#");
    rotor.m_deflection = read_table(
        card, "# Is 'r/R, Deflection' table provided?", "#    r/R,         Deflection", 8);
    card.literal("#");
    rotor.m_twist
        = read_table(card, "# Is 'r/R, Twist' table provided?", "#    r/R,         Twist", 10);
    card.literal("#");
    rotor.m_inplane = read_table(
        card, "# Is 'r/R, Inplane Defl' table provided?", "#    r/R,         Inplane Defl", 8);
}

std::vector<double> read_reference_radii(Lines& card, const std::string& title)
{
    heading(card, kTableRule, title + " Reference Radius Locations (r/R) (for Output)");
    const std::uint32_t rows = read_size(card, "1");
    card.literal("# Reference Radius (r/R)");
    std::vector<double> radii;
    for (std::uint32_t i = 0; i < rows; ++i) {
        LineParts row = read_row(card, i, "a number with six digits behind the point");
        row.literal("       ");
        radii.push_back(row.padded(Numbers::fixed_of, kRadiusWidth));
        row.end();
    }
    return radii;
}

Rotor read_rotor(Lines& card, const std::string& title)
{
    Rotor rotor;
    heading(card, "# --------", title);
    read_main_parameters(card, title, rotor);
    rotor.m_cyclic = read_harmonics(card, title + " Harmonic Cyclic Pitch (+ve) Coefficients");
    rotor.m_flap = read_harmonics(card, title + " Harmonic Flapping Coefficients");
    read_data_points(card, title, rotor);
    rotor.m_vecRefRadius = read_reference_radii(card, title);
    return rotor;
}

std::string title_of(std::size_t index) { return "Rotor " + std::to_string(index + 1); }

void read_trim(Lines& card, RotorCard& rotors)
{
    heading(card, "# ----------------", "Trim Parameters");
    rotors.m_bTrim = logical(card, "# Is there Trim?");
    rotors.m_uintTrimPeriod = count(card, "# Trim Period (Num. of iters. between Trims):");
    rotors.m_uintTrimStart = count(card, "# Trim Start Iteration:");
    rotors.m_uintTrimEnd = count(card, "# Trim End Iteration:");
    for (std::size_t i = 0; i < rotors.m_vecRotors.size(); ++i) {
        rotors.m_vecRotors[i].m_dRequiredCT
            = general(card, "# " + title_of(i) + " Required Thrust Coefficient:");
    }
    rotors.m_dTrimMaxCollectiveChange = general(card, "# Maximum Collective Change:");
    rotors.m_dTrimTolerance = general(card, "# Trim Tolerence:"); // the card's own spelling
}

std::vector<RotorAirfoil> read_airfoils(Lines& card, const std::string& title)
{
    heading(card, "# -----------------------------", title + " Airfoil Tables (AFT)");
    const std::uint32_t rows = read_size(card, "2");
    card.literal("# AFT Schedules (r/R), Airfoil Tables (AFT) Files");
    std::vector<RotorAirfoil> airfoils;
    for (std::uint32_t i = 0; i < rows; ++i) {
        LineParts row = read_row(
            card, i, "a number with six digits behind the point and a file between single quotes");
        row.literal("   ");
        RotorAirfoil airfoil;
        airfoil.m_dRadius = row.padded(Numbers::fixed_of, kRadiusWidth);
        row.literal("          '");
        if (!row.rest().ends_with('\''))
            row.refuse();
        airfoil.m_strFile = row.rest().substr(0, row.rest().size() - 1);
        airfoils.push_back(airfoil);
    }
    return airfoils;
}

/// In fixed form if any rotor has airfoil tables: their rows leave it behind for all centres.
std::array<double, 3> read_center(Lines& card, const std::string& title, bool isFixed)
{
    heading(card, "# ---------------------------", title + " Center coordinates");
    std::array<double, 3> center {};
    LineParts line(card,
        isFixed ? "three numbers with six digits behind the point"
                : "three numbers of six significant digits");
    for (std::size_t i = 0; i < center.size(); ++i) {
        if (i > 0)
            line.literal(" ");
        center[i] = line.value(isFixed ? Numbers::fixed_of : Numbers::general_of);
    }
    line.end();
    return center;
}

} // namespace

RotorCard read_rotor_card(const std::string& path)
{
    Lines card(path);
    RotorCard rotors;
    rotors.m_bLHAWT = read_application(card);
    heading(card, "# -----------------", "Number of Rotors");
    const auto number = card.value(Numbers::unsigned_of, Numbers::kUnsigned);
    for (std::uint32_t i = 0; i < number; ++i)
        rotors.m_vecRotors.push_back(read_rotor(card, title_of(i)));
    read_trim(card, rotors);
    for (std::uint32_t i = 0; i < number; ++i)
        rotors.m_vecRotors[i].m_vecAirfoils = read_airfoils(card, title_of(i));
    const bool isFixed = std::any_of(rotors.m_vecRotors.begin(), rotors.m_vecRotors.end(),
        [](const Rotor& rotor) { return !rotor.m_vecAirfoils.empty(); });
    for (std::uint32_t i = 0; i < number; ++i)
        rotors.m_vecRotors[i].m_adCenter = read_center(card, title_of(i), isFixed);
    card.end();
    return rotors;
}

} // namespace Standins
