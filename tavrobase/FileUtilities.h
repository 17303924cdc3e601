// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/FilePath.h"

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

/// What touches the disk beyond `FilePath` itself.
///
/// A missing input throws `BadParameter`; a failure of the system is reported at debug level 1
/// where told and returned; a failure within a directory stops the walk. Unless told otherwise a
/// function draws its trace lines.  Threads: the main thread.
namespace Tavro {

/// Removes a file, a link, or a directory with all that is in it. False at the first thing that
/// cannot be removed; a missing path is false too. Hidden names are not seen: a directory that
/// holds one stays.
bool RemovePath(FilePath path);

/// Copies a file's bytes, replacing the target. False if the target cannot be opened or written; a
/// source that cannot be opened counts as empty. A file copied onto itself stays as it is.
/// Errors: `BadParameter` if the source is missing.
bool copyFile(FilePath from, FilePath to);

/// Moves a file or a directory by copying and removing, in place of what is at the target. A link
/// to a directory moves as a link. False if anything failed; what could not be moved completely is
/// still at the source. A move that would destroy its source or never end is refused. Errors:
/// `BadParameter` if the source is missing.
bool moveFile(FilePath from, FilePath to);

/// Copies a text without the carriage returns before its line ends. A text that ends in a line end
/// gains an empty line. False if the source cannot be opened or a line cannot be written. Errors:
/// `BadParameter` if the source is missing.
bool copyTxtFileStripDOS(FilePath from, FilePath to);

/// Gives a file another name in its directory; never over an existing one.
/// Errors: `BadParameter` if the file is missing.
bool RenameFile(FilePath file, std::string newName);

/// 0 on success.
/// Errors: `BadParameter` for a mode above 0777 or a missing file.
int ChangeFilePermissions(FilePath file, unsigned int mode);

/// Names (not paths) in a directory that match a shell wildcard, directories with "/" at the end,
/// in the order in which the system lists them. A pattern with a wildcard leaves out names that
/// begin with ".". Errors: `BadParameter` if the directory is missing.
[[nodiscard]] std::vector<std::string> GetDirectoryContents(
    FilePath directory, std::string pattern);

/// A path in the directory that is free: base and extension, with 2, 3, ... between them if need
/// be. Errors: `BadParameter` if the directory is missing.
[[nodiscard]] FilePath GetUniqueName(FilePath directory, std::string base, std::string extension);

/// Appends all files of the series to which a path like "out_00012.dat" belongs, and tells how
/// many. Errors: ends the process with -1 if the system fails to list a directory; one that is
/// missing or may not be read has no files. Draws no trace lines.
unsigned int FindNumberedFiles(std::string path, std::vector<std::string>& out);

/// Shortens a list of names for display: the first numbered name gets "###" for its number and
/// stands for all numbered names behind it. Tells how many went. Draws no trace lines.
int CompressNumberedFiles(std::vector<std::string>& names);

/// Makes a link at `to` that leads to the file `from`, in place of what is there. One that would
/// take away what it leads to is refused.
/// Errors: `BadParameter` if the source is missing or a directory.
bool SymlinkFile(FilePath from, FilePath to);
bool LinkFile(FilePath from, FilePath to);

/// The user's own folder; empty if the system does not know one. Found once.
[[nodiscard]] FilePath GetHomeDirectory();
/// The folder for documents shared by all users of the machine; empty if there is none. Found once.
[[nodiscard]] FilePath GetDocumentsDirectory();

/// Changes the working directory; a failure is reported.
bool SetCurrentDirectoryA(FilePath directory);

/// Climbs from the working directory to the top of the chain of `GetPath`, which lies above the
/// root: the result is "./". Draws no trace lines.
[[nodiscard]] FilePath GetWorkingDirectory();

/// Seconds since 1970; 0 if the file is missing.
[[nodiscard]] std::int64_t GetModifiedTime(FilePath file);

/// Bytes, in the low 32 bits of the size; 0 if the file is missing.
[[nodiscard]] std::uint32_t GetFileSize(const FilePath& file);

/// Reads past white space and whole lines that begin with the comment character. Draws no trace
/// lines.
void SkipCommentLines(std::ifstream& stream, char comment);

/// Hides an existing file from plain listings where the system can. True if it exists. Draws no
/// trace lines.
bool MakeHidden(const FilePath& file);

} // namespace Tavro
