// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// The rules that hold for the tree as a whole. Each function names the places that break its rule,
/// as "file:line: what", sorted; an empty list is what we want.
namespace Testing {

/// Includes of ours that point up the folder list, or sideways to a folder that this one may not
/// use.
std::vector<std::string> upward_includes(const std::string& root);

/// Headers of the operating system, or switches between systems, outside the platform folder.
std::vector<std::string> system_leaks(const std::string& root);

/// Folders without a README.md, and sources that their folder's README.md does not name.
std::vector<std::string> untold_files(const std::string& root);

/// Pages below docs/ that docs/index.md does not link to.
std::vector<std::string> unlinked_pages(const std::string& root);

/// Build files with a flag that changes floating-point results.
std::vector<std::string> fast_math_flags(const std::string& root);

/// Files other than the build file and the change log that state the version.
std::vector<std::string> stray_versions(const std::string& root, const std::string& version);

} // namespace Testing
