// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/FilePath.h"

namespace Tavro {

/// A path with just this text: a name as it stands on disk, in which "~" or a backslash mean
/// nothing.
[[nodiscard]] FilePath AsWritten(const std::string& text);

/// Whether a text is a path from the top of a file system on, in the writing of the system.
[[nodiscard]] bool IsRooted(const std::string& text);

/// Whether there is an entry of that name, be it a link that leads nowhere.
[[nodiscard]] bool IsOccupied(const FilePath& path);

/// Whether both paths, as the system reads them, lead to one existing file or directory.
[[nodiscard]] bool LeadToOneFile(const std::string& left, const std::string& right);

/// Whether `inner` is `outer` or lies below it, wherever links in the two may lead.
[[nodiscard]] bool LiesWithin(const FilePath& inner, const FilePath& outer);

/// Whether removing what is at `doomed` would take `path`, or the way to it, along.
[[nodiscard]] bool GoesWith(const FilePath& path, const FilePath& doomed);

/// The path as an entry of its directory, without the "/" of a directory: the name under which
/// something else can be made in a directory's place.
[[nodiscard]] FilePath AsEntry(const FilePath& path);

} // namespace Tavro
