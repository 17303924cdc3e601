// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tavrobase/Exception.h"

#include <boost/filesystem/path.hpp>

#include <iosfwd>
#include <string>
#include <vector>

namespace Tavro {

/// A path was asked for something that it does not have.
class BadFilePathException : public Exception {
public:
    BadFilePathException(
        std::string pstrErrorMessage, std::string pstrFilename, unsigned short pushtLineNumber);
    BadFilePathException(const BadFilePathException& other);
    BadFilePathException& operator=(const BadFilePathException& other) = default;
    ~BadFilePathException();
};

/// A file or directory by name: bytes, normalised to forward slashes. A path that names an existing
/// directory when it is made ends in "/", so that a file name can be added to it as it stands.
/// Relative paths stay relative.
///
/// Cost: making one asks the file system once; build long names as text first.
class FilePath {
public:
    FilePath();
    /// Normalises as `Set` does, but keeps "./", the current directory.
    FilePath(const std::string& text); // NOLINT(google-explicit-constructor): texts serve as paths
    FilePath(const FilePath& other);
    FilePath& operator=(const FilePath& other);
    virtual ~FilePath();

    /// The stored text; both are the same.
    [[nodiscard]] virtual std::string Get() const;
    [[nodiscard]] virtual std::string GetFullPath() const;
    /// Directory of this path; "./" if it has none.
    [[nodiscard]] virtual FilePath GetPath() const;
    /// Last component, with "/" if it is an existing directory.
    /// Errors: `std::out_of_range` for the root directory, whose name collapses to nothing.
    [[nodiscard]] virtual std::string GetName() const;
    /// Last component without its last extension.
    [[nodiscard]] virtual std::string GetJustName() const;
    /// Extension without the dot.
    /// Errors: `BadFilePathException` if the path is empty.
    [[nodiscard]] virtual std::string GetExtension() const;
    /// This path as seen from `base`; the whole path if the two have no common root.
    [[nodiscard]] virtual std::string GetRelative(FilePath base) const;

    /// Normalises and stores: backslashes (those that escape a blank, "(", ")" or "&" excepted),
    /// doubled slashes, "/./", the first "~", and ".." after a name. Errors: `std::out_of_range` if
    /// nothing is left; the path then keeps its former value.
    virtual void Set(const std::string& text);
    /// Adds the text as it stands.
    virtual void Append(const std::string& text);

    [[nodiscard]] virtual bool Exists() const;
    [[nodiscard]] virtual bool IsDirectory() const;
    [[nodiscard]] virtual bool HasReadPermissions() const;
    /// Of a missing path: whether it could be created in its directory.
    [[nodiscard]] virtual bool HasWritePermissions() const;

    /// Whether the text is not empty.
    [[nodiscard]] bool Initialized() const;
    /// Whether the text may be read, written and entered.
    [[nodiscard]] static bool CanWriteToDirectory(const std::string& text);

    [[nodiscard]] FilePath operator+(const std::string& text) const;
    FilePath& operator+=(const std::string& text);

    [[nodiscard]] bool operator<(const FilePath& other) const;
    [[nodiscard]] bool operator>(const FilePath& other) const;
    [[nodiscard]] bool operator==(const FilePath& other) const;
    [[nodiscard]] bool operator!=(const FilePath& other) const;
    [[nodiscard]] bool operator<=(const FilePath& other) const;
    [[nodiscard]] bool operator>=(const FilePath& other) const;

private:
    boost::filesystem::path m_path;
    bool m_bInitialized = false;
};

std::ostream& operator<<(std::ostream& stream, const FilePath& path);
/// The whole line is the path, blanks included.
std::istream& operator>>(std::istream& stream, FilePath& path);

/// Creates one level; the mode is lowered by the process's mask. 0 on success; else the failure is
/// reported at debug level 1.
int createDirectory(FilePath directory, unsigned int mode);

/// First executable of this name in the directories of the environment's "PATH"; empty if there is
/// none.
[[nodiscard]] FilePath GetExecutablePath(std::string name);

/// Empty if the system cannot tell.
[[nodiscard]] FilePath getCurrentDirectory();

/// Changes the working directory without a report.
bool SetWorkingDirectory(FilePath directory);

/// The pieces between the delimiters, empty ones included; an empty text is one empty piece. An
/// empty delimiter does not split.
[[nodiscard]] std::vector<std::string> SplitString(
    const std::string& text, const std::string& delimiter);

/// Sends standard output and standard error to two files, replacing or continuing them. A stream
/// whose file cannot be opened stays as it is.
void Daemonize(const FilePath& out, const FilePath& err, bool appendOut, bool appendErr);

} // namespace Tavro
