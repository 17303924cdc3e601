// SPDX-License-Identifier: Apache-2.0
#include "case/AdaptiveInput.h"

#include "case/Card.h"
#include "case/GridGenStream.h"
#include "case/LabelFile.h"
#include "state/ControllerState.h"
#include "tavrobase/PathIdentity.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <locale>

namespace {

using VRK::GridGen::Input;
using VRK::GridGen::kBlockBytes;
using VRK::GridGen::kBox;
using VRK::GridGen::kBoxBytes;
using VRK::GridGen::kPointBytes;
using VRK::GridGen::kTriangle;
using VRK::GridGen::kTriangleBytes;
using VRK::GridGen::Output;

constexpr std::uint32_t kNoTag = 0;

/// Domain and divisions, from which it finds the size of a base cell.
[[nodiscard]] bool copy_domain(Input& old, Output& adapted, double (&cell)[3])
{
    double min[3];
    double max[3];
    std::uint32_t divisions[3];
    if (!old.values(min, max, divisions))
        return false;
    for (int axis = 0; axis < 3; ++axis)
        cell[axis] = (max[axis] - min[axis]) / static_cast<double>(divisions[axis]);
    adapted.put(min, max, divisions);
    return true;
}

[[nodiscard]] bool copy_points(Input& old, Output& adapted)
{
    std::uint32_t count = 0;
    if (!old.values(count))
        return false;
    adapted.put(count);
    for (std::uint64_t left = count * std::uint64_t { kPointBytes }; left > 0;) {
        const auto piece = static_cast<std::size_t>(std::min<std::uint64_t>(left, kBlockBytes / 2));
        const char* points = old.take(piece);
        if (points == nullptr)
            return false;
        adapted.put_bytes(points, piece);
        left -= piece;
    }
    return true;
}

/// How many boxes it wrote.
std::uint32_t write_boxes(std::istream& labels, const double (&cell)[3], Output& adapted)
{
    (void)labels.imbue(std::locale::classic()); // the former locale is of no use here
    const VRK::LabelHead head = VRK::read_label_head(labels);
    const std::int64_t maxLevel = std::int64_t { head.m_nLevelLimit } - 1;
    const std::int64_t backLevel = std::int64_t { head.m_nBackgroundLevel } - 1;

    std::uint32_t boxes = 0;
    VRK::Label label;
    VRK::LabelBox box;
    while (VRK::read_label(labels, label)) {
        switch (VRK::use_label(label, cell, maxLevel, box)) {
        case VRK::LabelUse::Box:
            adapted.put(kBox, box.m_uintLevel, box.m_adBox, kNoTag);
            ++boxes;
            break;
        case VRK::LabelUse::Inconsistent:
            std::cerr << "ERROR: Non-Consistent Cartesian Ref Box Omitted!\n";
            break;
        case VRK::LabelUse::Skip:
            break;
        }
    }
    adapted.put(kBox, static_cast<std::uint32_t>(backLevel), head.m_adBackgroundBox, kNoTag);
    return boxes + 1;
}

/// Drops boxes and keeps triangles, which it counts.
[[nodiscard]] bool copy_triangles(
    Input& old, std::uint32_t count, Output& adapted, std::uint32_t& triangles)
{
    bool lost = false;
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint32_t kind = 0;
        const char* rest = nullptr;
        if (!old.values(kind))
            return lost;
        if (kind == kTriangle) {
            rest = old.take(kTriangleBytes);
            if (rest != nullptr) {
                adapted.put(kind);
                adapted.put_bytes(rest, kTriangleBytes);
                ++triangles;
            }
        } else if (kind == kBox) {
            rest = old.take(kBoxBytes);
        } else {
            lost = true;
            continue;
        }
        if (rest == nullptr)
            return lost;
    }
    return true;
}

} // namespace

bool adapt_grid_gen_input(std::istream& oldStream, std::istream& labels, std::ostream& stream)
{
    Input old(oldStream);
    const auto begin = static_cast<std::streamoff>(stream.tellp());
    Output adapted(stream);
    double cell[3];
    std::uint32_t count = 0;
    if (!copy_domain(old, adapted, cell) || !copy_points(old, adapted) || !old.values(count))
        return false;
    const std::uint64_t countAt = adapted.position();
    adapted.put(count); // holds the place
    std::uint32_t entities = write_boxes(labels, cell, adapted);
    const bool complete = copy_triangles(old, count, adapted, entities);
    adapted.flush();
    stream.seekp(begin + static_cast<std::streamoff>(countAt));
    adapted.put(entities);
    adapted.flush();
    return complete;
}

bool create_adaptive_input(VRK::ControllerInput& input, std::string& errorText)
{
    const std::string oldPath = g_info.m_fpTreeGenFile.Get();
    const std::string newPath
        = g_info.m_fpTreeGenFile.GetPath().Get() + input.m_strCaseName + ".treegen-adapted";
    std::ifstream old(oldPath, std::ios::binary);
    if (!old) {
        errorText = "could not read treegen file";
        return false;
    }
    if (Tavro::LeadToOneFile(newPath, oldPath)) { // opening it for writing would destroy it
        errorText = "treegen file cannot be adapted onto itself";
        return false;
    }
    auto adapted = VRK::Card::file(newPath);
    if (!adapted) {
        errorText = "could not write treegen file";
        return false;
    }

    const std::string labelPath = VRK::Card::path("Label.dat");
    std::ifstream labels(labelPath);
    if (!labels)
        std::cout << "Could not find or load Labels File: " << labelPath << std::endl;

    const bool complete = adapt_grid_gen_input(old, labels, adapted);
    adapted.close();
    if (!complete || !adapted) {
        errorText = complete ? "could not write treegen file" : "could not read treegen file";
        (void)std::remove(newPath.c_str()); // if it stays too, the reason is the one above
        return false;
    }
    g_info.m_fpTreeGenFile = Tavro::FilePath(newPath);
    return true;
}
