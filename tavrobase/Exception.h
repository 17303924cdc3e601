// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Indentation of the trace lines: three characters, "|  ", for each traced function that is
/// running. Written by the trace frames alone.
extern std::string strDebugIndentLevel;

/// The one diagnostic output point. Prints `text` and a line end to the error stream if `level` is
/// not above the number that the command-line parameter "debug" gives (0 without one, and nothing
/// is printed or settled before the command line is set up). Above level 3 the line is indented.
/// Levels: 1 errors, 2 their details, 5 trace.  Threads: safe, line by line.
void PrintErrorDebugHelper(int level, std::string text);

namespace Tavro {

/// Root of the errors that the base library throws. Not a `std::exception`, and nothing is virtual:
/// catch it as `const Tavro::Exception&`.
class Exception {
public:
    /// The message and the file must not be empty nor the line 0: the process ends by assertion.
    Exception(
        std::string pstrErrorMessage, std::string pstrFilename, unsigned short pushtLineNumber);
    Exception(const Exception& other);
    Exception& operator=(const Exception& other) = default;
    ~Exception();

    [[nodiscard]] std::string What() const;
    /// Source file of the throw.
    [[nodiscard]] std::string Filename() const;
    /// Source line of the throw.
    [[nodiscard]] unsigned short LineNumber() const;

    std::string m_strErrorMessage; ///< never empty
    std::string m_strFilename; ///< never empty
    unsigned short m_ushtLineNumber = 0; ///< never 0
};

/// "Internal memory management error".
class NullPointer : public Exception {
public:
    NullPointer(std::string pstrFilename, unsigned short pushtLineNumber);
    NullPointer(const NullPointer& other);
    NullPointer& operator=(const NullPointer& other) = default;
    ~NullPointer();
};

/// As given, or "Internal data management error".
class BadParameter : public Exception {
public:
    BadParameter(
        std::string pstrErrorMessage, std::string pstrFilename, unsigned short pushtLineNumber);
    BadParameter(std::string pstrFilename, unsigned short pushtLineNumber);
    BadParameter(const BadParameter& other);
    BadParameter& operator=(const BadParameter& other) = default;
    ~BadParameter();
};

/// "Internal memory management error".
class NullParameter : public BadParameter {
public:
    NullParameter(std::string pstrFilename, unsigned short pushtLineNumber);
    NullParameter(const NullParameter& other);
    NullParameter& operator=(const NullParameter& other) = default;
    ~NullParameter();
};

/// "Invalid member function access".
class InvalidMemberAccess : public Exception {
public:
    InvalidMemberAccess(std::string pstrFilename, unsigned short pushtLineNumber);
    InvalidMemberAccess(const InvalidMemberAccess& other);
    InvalidMemberAccess& operator=(const InvalidMemberAccess& other) = default;
    ~InvalidMemberAccess();
};

/// "Memory allocation failed".
class AllocationFailed : public Exception {
public:
    AllocationFailed(
        std::string pstrFilename, unsigned short pushtLineNumber, unsigned short pushtSize);
    AllocationFailed(const AllocationFailed& other);
    AllocationFailed& operator=(const AllocationFailed& other) = default;
    ~AllocationFailed();

    /// Bytes that were asked for.
    [[nodiscard]] unsigned short Size() const;

    unsigned short m_ushtSize;
};

} // namespace Tavro
