// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Standins {

/// A text file, line by line. Every line ends with a line feed, the last one too.
/// Errors: each member throws `Malformed` with the place at which the file departs from what is
/// expected.
class Lines {
public:
    explicit Lines(const std::string& path);
    Lines(const Lines&) = delete; // lines are parts of its own text
    Lines& operator=(const Lines&) = delete;

    /// The next line without its end, which lives as long as this. `expected` is for the message if
    /// there is none.
    std::string_view next(const std::string& expected);
    /// Takes a line that is this text.
    void literal(std::string_view text);
    /// Takes a line that is a value of this kind, and nothing else.
    template <typename Value>
    Value value(std::optional<Value> (*read)(std::string_view), const std::string& expected)
    {
        const std::optional<Value> found = read(next(expected));
        if (!found)
            refuse(expected);
        return *found;
    }
    /// Takes a line between single quotes, which may hold others.
    std::string quoted();
    /// Checks that no line is left.
    void end();

    /// Refuses the line taken last.
    [[noreturn]] void refuse(const std::string& expected) const;
    [[noreturn]] void refuse(const std::string& wrong, const std::string& expected) const;

private:
    std::string m_path;
    std::string m_text;
    std::string_view m_line;
    std::size_t m_begin = 0;
    std::size_t m_number = 0;
};

/// A line being taken apart from its front. Each member refuses the line, as one that is not what
/// was expected, if its front is not what is asked for.
class LineParts {
public:
    /// Takes the next line.
    LineParts(Lines& lines, std::string expected);

    void literal(std::string_view text);
    /// As many blanks as fill up `used` to `width`.
    void padding(std::size_t used, std::size_t width);
    /// What stands before the next blank or the end.
    std::string_view word();
    /// A word that is a value of this kind.
    template <typename Value>
    Value value(std::optional<Value> (*read)(std::string_view))
    {
        const std::optional<Value> found = read(word());
        if (!found)
            m_lines.refuse(m_expected);
        return *found;
    }
    /// A word that is a value of this kind, padded with blanks to `width`.
    template <typename Value>
    Value padded(std::optional<Value> (*read)(std::string_view), std::size_t width)
    {
        const std::size_t before = m_rest.size();
        const Value found = value(read);
        padding(before - m_rest.size(), width);
        return found;
    }
    [[nodiscard]] std::string_view rest() const { return m_rest; }
    [[nodiscard]] bool at_end() const { return m_rest.empty(); }
    void end();
    [[noreturn]] void refuse() const { m_lines.refuse(m_expected); }

private:
    Lines& m_lines;
    std::string m_expected;
    std::string_view m_rest;
};

/// The text between double quotes as a message has it: without control characters, and not long.
[[nodiscard]] std::string shown(std::string_view text);

} // namespace Standins
