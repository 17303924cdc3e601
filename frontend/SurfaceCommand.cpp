// SPDX-License-Identifier: Apache-2.0
#include "frontend/SurfaceCommand.h"

#include "frontend/BodyFile.h"
#include "frontend/CaseText.h"
#include "frontend/ExitStatus.h"
#include "frontend/GeometryChecks.h"
#include "frontend/SurfaceFigures.h"
#include "frontend/TextFile.h"
#include "geometry/SurfaceOutput.h"
#include "geometry/TriangleCloud.h"
#include "tavrobase/StringUtilities.h"
#include "tavrobase/Surveillance.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <exception>
#include <filesystem>
#include <iostream>
#include <system_error>

namespace Frontend {

namespace {

struct NamedFacets {
    std::string name;
    Facets facets;
};

struct Input {
    std::vector<NamedFacets> bodies;
    std::optional<unsigned int> level;
    std::vector<std::string> files; ///< that all of it comes from
};

bool is_case(const std::string& body) { return is_directory(body) || body.ends_with(".toml"); }

/// One case, which else are body files.
bool is_case(const std::vector<std::string>& bodies)
{
    return bodies.size() == 1 && is_case(bodies[0]);
}

/// A number as it is typed; nothing if it is none, or one that cannot be kept.
template <typename Number>
std::optional<Number> number_of(std::string_view text)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    Number number {};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc {} && end == text.data() + text.size();
    return whole ? std::optional(number) : std::nullopt;
}

/// The level that the command line asks for; nothing if it is none that can be served.
std::optional<unsigned int> level_of(const std::string& text)
{
    const auto level = number_of<unsigned int>(text);
    return level && *level <= kHighestWettedLevel ? level : std::nullopt;
}

std::optional<double> scale_of(const std::string& text)
{
    const auto scale = number_of<double>(text);
    return scale && std::isfinite(*scale) && *scale > 0.0 ? scale : std::nullopt;
}

/// What the command line alone shows to be wrong.
void check_options(const SurfaceOptions& options, Diagnostics& diagnostics)
{
    for (const std::string& body : options.bodies) {
        if (options.bodies.size() > 1 && is_case(body))
            diagnostics.error({ body }, "a case is given together with something else",
                "one case, or body files");
    }
    if (options.level && !level_of(*options.level))
        diagnostics.error({ "--level" }, "the level is " + *options.level,
            "an integer from 0 to " + std::to_string(kHighestWettedLevel));
    if (!options.scale)
        return;
    if (is_case(options.bodies))
        diagnostics.error({ options.bodies[0] },
            "--scale is given for a case, each body of which has a \"scale\" of its own",
            "body files, or no --scale");
    else if (!scale_of(*options.scale))
        diagnostics.error({ "--scale" }, "the factor is " + *options.scale, "a number above 0");
}

Input read_bodies(const SurfaceOptions& options, Diagnostics& diagnostics)
{
    Input input { {}, options.level ? level_of(*options.level) : std::nullopt, {} };
    if (is_case(options.bodies)) {
        Diagnostics checked; // a case is checked for its own cells, not for the ones asked for here
        const auto record = read_case_text(options.bodies[0], checked, input.files);
        if (!record) {
            checked.print(std::cerr);
            diagnostics.error({ case_file(options.bodies[0]) }, "the case has errors");
            return input;
        }
        for (const VRK::BodyData& body : record->m_vecBodies)
            input.bodies.push_back(
                { "body " + std::to_string(body.m_uintBodyId), body.m_vecFacets });
        if (!input.level)
            input.level = record->m_grid.m_uintWettedSurfaceArg;
        if (input.bodies.empty())
            diagnostics.error({ case_file(options.bodies[0]) }, "the case has no bodies");
        return input;
    }
    input.files = options.bodies;
    BodySource source;
    source.scale = options.scale ? scale_of(*options.scale).value_or(1.0) : 1.0;
    for (const std::string& path : options.bodies) {
        NamedFacets body { "this body", {} };
        read_body_file(path, { path }, diagnostics, body.facets);
        move_facets(source, body.facets);
        input.bodies.push_back(std::move(body));
    }
    return input;
}

void check_bodies(const Input& input, const SurfaceOptions& options, Diagnostics& diagnostics)
{
    std::vector<const Facets*> all;
    for (const NamedFacets& body : input.bodies)
        all.push_back(&body.facets);
    const double cell = wetted_cell(all, *input.level);
    for (std::size_t i = 0; i < all.size(); ++i) {
        const std::string& file = options.bodies[is_case(options.bodies) ? 0 : i];
        check_body({ input.bodies[i].name, { case_file(file) }, all[i], cell }, diagnostics);
    }
}

/// The form of the output; nothing if its ending is none of ours.
enum class Form { P3D, STL, VTK };
std::optional<Form> form_of(const std::string& path)
{
    if (has_ending(path, ".p3d"))
        return Form::P3D;
    if (has_ending(path, ".stl"))
        return Form::STL;
    if (has_ending(path, ".vtk"))
        return Form::VTK;
    return std::nullopt;
}

std::string text_of(const std::error_code& error)
{
    return Tavro::error_text(error.default_error_condition().value());
}

/// Lets `write` make a file of that name in a directory of its own beside the place where it
/// belongs, and moves it there once it is whole. False, with the system's reason, if that failed.
template <typename Write>
bool write_whole(const std::string& path, std::string& reason, Write write)
{
    namespace fs = std::filesystem;
    const std::string name = path.substr(directory_of(path).size());
    // A name that nobody has: what a program that was killed here has left stays out of the way.
    fs::path beside;
    std::error_code error;
    bool made = false;
    for (int i = 0; i < 100 && !made && !error; ++i) {
        beside = path + ".part" + std::to_string(i);
        made = fs::create_directory(beside, error);
    }
    if (!made) {
        reason = error ? text_of(error) : "no name is free beside it";
        return false;
    }
    errno = 0; // what writes there does not say why the system refused
    const bool good = write((beside / name).string());
    if (good)
        fs::rename(beside / name, path, error);
    else
        error = { errno, std::generic_category() };
    if (error)
        reason = text_of(error);
    std::error_code ignored; // what stays of it is only room on the disk
    fs::remove_all(beside, ignored);
    return good && !error;
}

bool write_surface(const std::string& path, const Tavro::RefPtr<Surface>& surface,
    unsigned char normals, unsigned char curvature, Diagnostics& diagnostics)
{
    const Form form = *form_of(path);
    if (form == Form::VTK)
        return write_bytes(path, vtk_text(*surface, normals, curvature), diagnostics);
    Tavro::Matrix44<double> identity {};
    for (const std::size_t i : { 0U, 5U, 10U, 15U })
        identity[i] = Tavro::Matrix44<double>::s_1;
    const Tavro::PlacedSurfaces<double> placed { { surface, identity } };
    std::string reason;
    const bool good = write_whole(path, reason, [&](const std::string& name) {
        Tavro::FilePath file;
        file += name;
        return form == Form::P3D ? Tavro::OutputToFile_P3D_ASC_VRK_MZ<double>(file, placed, reason)
                                 : Tavro::OutputToFile_STL_Binary<double>(file, placed, reason);
    });
    if (!good)
        diagnostics.error({ path }, "the file cannot be written: " + reason);
    return good;
}

void print_figures(const SurfaceOptions& options, unsigned int level, const SurfaceFigures& figures)
{
    using Tavro::NumToString;
    std::cout << options.output << ": "
              << Tavro::formatInteger(static_cast<unsigned long>(figures.triangles))
              << " triangles at level " << NumToString(level) << '\n'
              << "  closed     ";
    if (figures.openEdges == 0)
        std::cout << "yes\n";
    else
        std::cout << "no; " << Tavro::formatInteger(static_cast<unsigned long>(figures.openEdges))
                  << " edges do not have two triangles\n";
    std::cout << "  area       " << NumToString(figures.area) << '\n';
    if (figures.openEdges == 0)
        std::cout << "  volume     " << NumToString(figures.volume) << '\n';
    std::cout << "  curvature  " << NumToString(figures.leastCurvature) << " to "
              << NumToString(figures.mostCurvature) << " degrees\n";
}

void warn_of_holes(const std::string& output, const SurfaceFigures& figures)
{
    if (figures.openEdges == 0)
        return;
    std::cout.flush(); // the figures come first where both streams meet
    Diagnostics diagnostics;
    diagnostics.warning({ output },
        "the surface is not closed: a body leaks, or is thinner than a cell somewhere; mend the "
        "body, or try another level");
    diagnostics.print(std::cerr);
}

int bad_input(const Diagnostics& diagnostics)
{
    diagnostics.print(std::cerr);
    return kBadInput;
}

} // namespace

int surface_command(const SurfaceOptions& options)
{
    Diagnostics diagnostics;
    if (!form_of(options.output)) {
        diagnostics.error({ options.output }, "its ending tells no form of file that is known",
            "a name that ends in .p3d, .stl or .vtk");
    }
    check_options(options, diagnostics);
    if (diagnostics.failed())
        return bad_input(diagnostics);
    const Input input = read_bodies(options, diagnostics);
    // It is reported with the rest.
    (void)may_write(options.output, options.force, diagnostics, input.files);
    if (!input.level && !diagnostics.failed())
        diagnostics.error({ options.bodies[0] }, "body files have no level of cells",
            "--level N, such as --level 6");
    if (input.level > kHighestWettedLevel) // of a case that is not checked
        diagnostics.error({ case_file(options.bodies[0]) },
            "the level is " + std::to_string(*input.level),
            "at most " + std::to_string(kHighestWettedLevel));
    if (diagnostics.failed())
        return bad_input(diagnostics);
    check_bodies(input, options, diagnostics);
    diagnostics.print(std::cerr);

    Tavro::TriangleCloud cloud;
    bool empty = true;
    for (const NamedFacets& body : input.bodies) {
        for (const auto& facet : body.facets) // degenerate ones drop out
            empty = cloud.AddTriangle(facet[0], facet[1], facet[2]) < 0 && empty;
    }
    if (empty) {
        std::cerr << options.output << ": there is no surface to make; expected a body that has "
                  << "one\n";
        return kBadInput;
    }
    Tavro::RefPtr<Surface> surface;
    unsigned char normals = 0;
    unsigned char curvature = 0;
    try {
        surface = cloud.GenerateApproximateWettedSurface(*input.level, normals, true, curvature);
    } catch (const std::exception& error) {
        std::cerr << options.output << ": the surface cannot be made: " << error.what() << '\n';
        return kFailed;
    }
    const SurfaceFigures figures = figures_of(*surface, curvature);
    if (figures.triangles == 0) {
        std::cerr << options.output << ": nothing is left of the bodies at level "
                  << Tavro::NumToString(*input.level) << "; a higher level has smaller cells\n";
        return kFailed;
    }
    Diagnostics writing;
    if (!write_surface(options.output, surface, normals, curvature, writing)) {
        writing.print(std::cerr);
        return kFailed;
    }
    print_figures(options, *input.level, figures);
    warn_of_holes(options.output, figures);
    return kFinished;
}

} // namespace Frontend
