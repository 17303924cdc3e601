// SPDX-License-Identifier: Apache-2.0
#include "frontend/BodyFile.h"
#include "frontend/CaseCommands.h"
#include "frontend/ExampleTexts.h"
#include "frontend/ExitStatus.h"
#include "frontend/TextFile.h"
#include "frontend/models/BodyOfRevolution.h"
#include "frontend/models/RobinBody.h"
#include "frontend/models/SimpleAirfoil.h"
#include "tavrobase/Surveillance.h"

#include <bit>
#include <filesystem>
#include <iostream>
#include <system_error>

namespace Frontend {

namespace {

struct NewFile {
    std::string name;
    std::string bytes;
};

/// Binary, as every program reads it: a title of 80 bytes, the number of triangles, and of each its
/// normal, three corners in single precision and two bytes that mean nothing.
std::string stl_bytes(const std::string& title, const Facets& facets)
{
    static_assert(std::endian::native == std::endian::little, "the file is memory as it stands");
    std::string bytes = title;
    bytes.resize(80, ' ');
    const auto count = static_cast<std::uint32_t>(facets.size());
    bytes.append(reinterpret_cast<const char*>(&count), sizeof count);
    for (const auto& facet : facets) {
        float numbers[12] {}; // a normal of zero tells the reader to work it out
        for (std::size_t k = 0; k < 9; ++k)
            numbers[3 + k] = static_cast<float>(facet[k / 3][k % 3]);
        bytes.append(reinterpret_cast<const char*>(numbers), sizeof numbers);
        bytes.append(2, '\0');
    }
    return bytes;
}

std::string airfoil_bytes(const std::string& title)
{
    return "This table comes from a simple model, not from a measurement: it shows the format.\n"
           "Thin airfoil up to the stall, flat plate beyond it. A run cuts these two lines away.\n"
        + Examples::simple_airfoil_table(title);
}

constexpr double kInch = 0.0254; // metres
constexpr double kRobinHalfLength = 39.35 * kInch;

std::vector<NewFile> robin_files()
{
    return {
        { "fuselage.stl",
            stl_bytes(
                "ROBIN fuselage, metres", Examples::robin_fuselage(kRobinHalfLength, 60, 48)) },
        { "pylon.stl",
            stl_bytes("ROBIN pylon, metres", Examples::robin_pylon(kRobinHalfLength, 24, 32)) },
        { "naca0012.dat", airfoil_bytes("NACA 0012, simple model") },
    };
}

std::vector<NewFile> turbine_files()
{
    Examples::Profile tower = Examples::dome_profile(0.0, 1.0, 3.0, 8);
    tower.insert(tower.end(), { { 29.0, 2.645 }, { 58.0, 2.29 }, { 88.5, 1.935 }, { 88.5, 0.0 } });
    return {
        { "tower.stl", stl_bytes("tower, metres", Examples::body_of_revolution(tower, 2, 48)) },
        { "nacelle.stl",
            stl_bytes("nacelle, metres",
                Examples::body_of_revolution(
                    Examples::ellipsoid_profile(-4.0, 14.5, 2.5, 24), 0, 32)) },
        { "blade.dat", airfoil_bytes("turbine blade, simple model") },
    };
}

std::vector<NewFile> files_of(const std::string& example)
{
    if (example.starts_with("robin"))
        return robin_files();
    if (example == "wind-turbine")
        return turbine_files();
    return { { "sphere.stl",
        stl_bytes("sphere, metres",
            Examples::body_of_revolution(
                Examples::ellipsoid_profile(-0.5, 1.0, 0.5, 24), 0, 48)) } };
}

/// Takes away what has been made, unless it is to stay.
class Made {
public:
    ~Made()
    {
        std::error_code ignored; // what cannot be taken away stays; the first error is reported
        for (auto made = m_made.rbegin(); made != m_made.rend(); ++made)
            std::filesystem::remove(*made, ignored);
    }
    Made() = default;
    Made(const Made&) = delete;
    Made& operator=(const Made&) = delete;
    Made(Made&&) = delete;
    Made& operator=(Made&&) = delete;

    void add(const std::filesystem::path& made) { m_made.push_back(made); }
    /// The directory, with those around it.
    void directories(const std::filesystem::path& directory, std::error_code& error)
    {
        if (directory.empty() || std::filesystem::exists(directory, error))
            return;
        directories(directory.parent_path(), error);
        // Behind a "/" at the end of the name it is there already.
        if (std::filesystem::create_directory(directory, error))
            add(directory);
    }
    void keep() { m_made.clear(); }

private:
    std::vector<std::filesystem::path> m_made;
};

} // namespace

int new_case_command(const std::string& directory, const std::string& example, bool force)
{
    const ExampleText* chosen = nullptr;
    std::vector<std::string> names;
    for (const ExampleText& text : example_texts()) {
        names.push_back(text.name);
        if (text.name == example || (example.empty() && chosen == nullptr))
            chosen = &text;
    }
    Diagnostics diagnostics;
    if (chosen == nullptr) {
        std::string all;
        for (const std::string& name : names)
            all += (all.empty() ? "" : ", ") + name;
        std::cerr << "vortik: there is no example \"" << example << "\"; expected one of " << all
                  << '\n';
        return kBadInput;
    }
    if (directory.empty()) { // an unset variable of a shell, which must not mean "/"
        std::cerr
            << "vortik: the directory has no name; expected one, such as `vortik new robin`\n";
        return kBadInput;
    }
    std::vector<NewFile> files = files_of(chosen->name);
    files.insert(files.begin(), { "case.toml", chosen->text });
    const std::string root = directory + (directory.ends_with('/') ? "" : "/");
    bool free = true;
    for (const NewFile& file : files) // all of them, before any is written
        free = may_write(root + file.name, force, diagnostics) && free;
    if (!free) {
        diagnostics.print(std::cerr);
        return kBadInput;
    }
    std::error_code error;
    Made made;
    made.directories(root, error);
    if (error) {
        std::cerr << root << ": the directory cannot be made: " << error.message() << '\n';
        return kFailed;
    }
    for (const NewFile& file : files) {
        const bool isNew = !exists(root + file.name);
        if (!write_bytes(root + file.name, file.bytes, diagnostics)) {
            diagnostics.print(std::cerr);
            return kFailed;
        }
        if (isNew)
            made.add(root + file.name);
    }
    made.keep();
    for (const NewFile& file : files)
        std::cout << "wrote " << root << file.name << '\n';
    std::cout << "Next: look into " << root << "case.toml, then `vortik check "
              << Tavro::typed_word(directory) << "`.\n";
    return kFinished;
}

} // namespace Frontend
