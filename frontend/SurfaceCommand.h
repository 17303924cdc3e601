// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Frontend {

/// What `vortik surface` was asked for.
struct SurfaceOptions {
    std::vector<std::string> bodies; ///< STL and OBJ files, or one case
    std::optional<std::string> level; ///< as typed; a case has one of its own
    std::optional<std::string> scale; ///< as typed, of body files; a case has its own
    std::string output; ///< its ending says the form: p3d, stl or vtk
    bool force = false;
};

/// Makes the approximate wetted surface of bodies, writes it and prints its figures. The result is
/// the exit status.
[[nodiscard]] int surface_command(const SurfaceOptions& options);

} // namespace Frontend
