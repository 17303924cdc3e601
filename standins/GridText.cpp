// SPDX-License-Identifier: Apache-2.0
#include "standins/GridText.h"

#include "standins/cards/GridFile.h"
#include "standins/cards/Malformed.h"
#include "standins/cards/Numbers.h"
#include "tavrobase/FilePath.h"

#include <cstddef>
#include <utility>

namespace Standins {

namespace {

template <typename Values>
std::string row(const Values& values)
{
    std::string text;
    for (const double value : values)
        text += " " + Numbers::shortest_text(value);
    return text;
}

std::string triangles_text(const std::string& name, const std::vector<TreegenTriangle>& triangles)
{
    std::string text = name + " " + std::to_string(triangles.size()) + "\n";
    for (const TreegenTriangle& triangle : triangles)
        text += std::to_string(triangle.m_uintLevel) + " " + std::to_string(triangle.m_uintBodyId)
            + " " + std::to_string(triangle.m_ucFlag) + row(triangle.m_adVertices) + "\n";
    return text;
}

std::string body_text(const Grid& grid)
{
    std::string text = "domain" + row(grid.m_adDomainMin) + row(grid.m_adDomainMax) + "\n";
    text += "offset" + row(grid.m_adOffset) + "\n";
    text += "cells";
    for (const std::uint32_t count : grid.m_auintCells)
        text += " " + std::to_string(count);
    text += "\nfitted " + std::to_string(grid.m_bFitted ? 1 : 0) + "\n";
    text += "boxes " + std::to_string(grid.m_vecBoxes.size()) + "\n";
    for (const TreegenBox& box : grid.m_vecBoxes)
        text += std::to_string(box.m_uintLevel) + " " + std::to_string(box.m_uintTag)
            + row(box.m_adBox) + "\n";
    return text + triangles_text("facets", grid.m_vecFacets)
        + triangles_text("wetted", grid.m_vecWetted);
}

// The lines behind the first one, each known by its number in the file.
class GridLines {
public:
    GridLines(std::string path, const std::string& text)
        : m_path(std::move(path))
        , m_lines(Tavro::SplitString(text, "\n"))
    {
    }

    // The words of the next line, of which there are so many; the first one is `key` unless that is
    // empty.
    std::vector<std::string> next(const std::string& key, std::size_t count)
    {
        const std::string line = m_next < m_lines.size() ? m_lines[m_next] : "";
        ++m_next;
        std::vector<std::string> words = Tavro::SplitString(line, " ");
        if (words.size() != count || (!key.empty() && words.front() != key))
            fail(line, std::to_string(count) + " words" + (key.empty() ? "" : " from " + key));
        return words;
    }

    double real(const std::string& word) const
    {
        const auto number = Numbers::finite_of(word);
        if (!number)
            fail(word, "a number");
        return *number;
    }

    std::uint32_t count(const std::string& word, std::uint32_t highest = 0xFFFFFFFF) const
    {
        const auto number = Numbers::unsigned_of(word);
        if (!number || *number > highest)
            fail(word, "a count of at most " + std::to_string(highest));
        return *number;
    }

    void end()
    {
        if (m_next + 1 != m_lines.size() || !m_lines.back().empty()) {
            ++m_next;
            fail("another line", "one line end and the end of the file");
        }
    }

private:
    // The first line of the file is not among ours.
    [[noreturn]] void fail(const std::string& wrong, const std::string& expected) const
    {
        throw Malformed::at_line(m_path, m_next + 1, "\"" + wrong + "\"", expected);
    }

    std::string m_path;
    std::vector<std::string> m_lines;
    std::size_t m_next = 0;
};

template <std::size_t Count>
void take(const GridLines& lines, const std::vector<std::string>& words, std::size_t first,
    std::array<double, Count>& numbers)
{
    for (std::size_t i = 0; i < Count; ++i)
        numbers[i] = lines.real(words[first + i]);
}

std::vector<TreegenTriangle> read_triangles(GridLines& lines, const std::string& name)
{
    std::vector<TreegenTriangle> triangles;
    const std::uint32_t count = lines.count(lines.next(name, 2)[1]);
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto words = lines.next("", 12);
        TreegenTriangle triangle;
        triangle.m_uintLevel = lines.count(words[0]);
        triangle.m_uintBodyId = lines.count(words[1]);
        triangle.m_ucFlag = static_cast<std::uint8_t>(lines.count(words[2], 255));
        triangle.m_bWetted = name == "wetted";
        take(lines, words, 3, triangle.m_adVertices);
        triangles.push_back(triangle);
    }
    return triangles;
}

} // namespace

std::array<double, 3> Grid::cell_size() const
{
    std::array<double, 3> size {};
    for (std::size_t axis = 0; axis < size.size(); ++axis)
        size[axis] = (m_adDomainMax[axis] - m_adDomainMin[axis]) / m_auintCells[axis];
    return size;
}

std::uint32_t Grid::mark() const
{
    std::uint32_t mark = 2166136261U; // FNV-1a
    for (const char c : body_text(*this))
        mark = (mark ^ static_cast<unsigned char>(c)) * 16777619U;
    return mark == 0 ? 1 : mark;
}

void write_grid(const std::string& path, const Grid& grid)
{
    write_grid_file(path, { { grid.cell_size(), {} }, body_text(grid) });
}

Grid read_grid(const std::string& path)
{
    GridLines lines(path, read_grid_file(path).m_strBody);
    Grid grid;
    const auto domain = lines.next("domain", 7);
    take(lines, domain, 1, grid.m_adDomainMin);
    take(lines, domain, 4, grid.m_adDomainMax);
    take(lines, lines.next("offset", 4), 1, grid.m_adOffset);
    const auto cells = lines.next("cells", 4);
    for (std::size_t axis = 0; axis < 3; ++axis)
        grid.m_auintCells[axis] = lines.count(cells[axis + 1]);
    grid.m_bFitted = lines.count(lines.next("fitted", 2)[1], 1) == 1;
    const std::uint32_t boxes = lines.count(lines.next("boxes", 2)[1]);
    for (std::uint32_t i = 0; i < boxes; ++i) {
        const auto words = lines.next("", 8);
        TreegenBox box;
        box.m_uintLevel = lines.count(words[0]);
        box.m_uintTag = lines.count(words[1]);
        take(lines, words, 2, box.m_adBox);
        grid.m_vecBoxes.push_back(box);
    }
    grid.m_vecFacets = read_triangles(lines, "facets");
    grid.m_vecWetted = read_triangles(lines, "wetted");
    lines.end();
    return grid;
}

} // namespace Standins
