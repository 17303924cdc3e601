// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "airfoil/TableLines.h"
#include "tavrobase/FilePath.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tavro {

/// One airfoil table: lift, drag and moment coefficients against Mach number and angle of attack.
/// The layout by column is in docs/formats/airfoil-tables.md. Mach numbers and coefficients have no
/// unit, angles are degrees.  Threads: the main thread.
class AirfoilTable : public BaseData {
public:
    /// What the int operations answer.
    enum Result : int {
        Good = 0,
        Failed = 6,
        NotFound = 62,
    };

    /// Title and sizes, at least 42 columns: the title in 0 to 29, then six counts of two columns.
    class TitleAndControlLine {
    public:
        static constexpr std::size_t kTitleWidth = 30;
        static constexpr std::size_t kCountWidth = 2;
        static constexpr std::size_t kCounts = 6;
        static constexpr std::size_t kLength = kTitleWidth + kCounts * kCountWidth;

        /// Reads one line. False if there was none, or as of `parse`.
        [[nodiscard]] bool readFromFile(std::istream& stream);
        /// Takes a line without its line end. False, and the counts stay, if it is too short or its
        /// counts are all blank or hold anything but digits and blanks.
        [[nodiscard]] bool parse(std::string_view line);
        /// Writes the line with 28 blanks, two more and the label behind the counts. False if the
        /// stream failed.
        [[nodiscard]] bool writeToFile(std::ostream& stream, const std::string& label) const;

        /// Sizes of table 0 (lift), 1 (drag) or 2 (moment).
        /// Errors: `std::out_of_range` for another table.
        [[nodiscard]] int machCount(int table) const;
        [[nodiscard]] int angleCount(int table) const;
        /// Lines of all three tables; a table without Mach numbers has none.
        [[nodiscard]] std::size_t dataLines() const;

        std::string m_line; ///< as read, without its line end
        std::string m_title; ///< columns 0 to 29
        /// Mach numbers and angles of lift, of drag, of moment.
        std::array<std::int32_t, kCounts> m_counts {};
    };

    /// One of the three tables as it stands in the file: lines of nine Mach numbers in columns 7 to
    /// 69, then for each angle a row with the angle in columns 0 to 6 and nine coefficients in 7 to
    /// 69; further coefficients follow on lines like those of the Mach numbers.
    class CoefSubTable {
    public:
        /// Reads table `index`: 0 lift, 1 drag, 2 moment. Adds its lines to `lineNumber` and every
        /// fault to `errors`. False if there was a fault, or at once, without a word, if the stream
        /// is not good. A table without Mach numbers has no lines and is read.
        /// Errors: `std::out_of_range` for another index.
        [[nodiscard]] bool readFromFile(std::istream& stream, const TitleAndControlLine& control,
            int index, unsigned long long& lineNumber, std::string& errors, const BaseData& base);
        /// False if the stream failed.
        [[nodiscard]] bool writeToFile(std::ostream& stream) const;

        /// The table as numbers, by their place in the columns from 0 on; nothing where the file
        /// has a blank field or no field at all.
        [[nodiscard]] std::optional<double> mach(std::size_t column) const;
        /// Degrees.
        [[nodiscard]] std::optional<double> angle(std::size_t row) const;
        [[nodiscard]] std::optional<double> coefficient(std::size_t row, std::size_t column) const;

        std::vector<DoubleX9Line> m_machLines; ///< nine Mach numbers a line
        std::vector<CoefDataX10Line> m_rows; ///< one per angle: the angle, then a value per Mach
    };

    /// What became of a file that was to be cleaned.
    struct cleanedFile {
        std::string m_path; ///< as asked for
        std::string m_cleaned; ///< to be used in its place
        bool m_bWritten; ///< whether `m_cleaned` is a file made for it
    };

    /// Path to use instead of `path`: that of a hidden copy beside the file, without the lines
    /// before its control line, or `path` itself if there is nothing to cut, no table is found or
    /// no copy can be written. The copy is relative to the working directory where it can be; it
    /// replaces a file of its name, and is there completely or not at all. The file itself is never
    /// changed. Asked again for the same text, the answer is that of the first time. Errors: none.
    [[nodiscard]] static std::string cleanAirfoilTable(const std::string& path);
    /// Removes the copies that `cleanAirfoilTable` has made, and forgets all answers.
    static void removeCleanedAirfoilTables();

    /// Reads a file that holds one table, with a header line in front unless `bNoHeader`. Every
    /// fault is one line in `errors`. 0, 6 if the table is not valid, 62 if there is no such file.
    [[nodiscard]] int readInputCard(const FilePath& path, std::string& errors, bool bNoHeader);
    /// Reads the next table of a file; adds its faults to `errors`. 0 or 6.
    [[nodiscard]] int readFromSingleInputFile(
        std::ifstream& stream, std::string& errors, bool bNoHeader);

    /// Replaces the file, which is emptied even if this table is not valid. `n` stands at the end
    /// of the header line. 0 or 6.
    [[nodiscard]] int writeInputCard(const FilePath& path, int n, bool bNoHeader) const;
    /// Writes this table behind what the stream has. 0; 6 if this table is not valid or a write
    /// failed.
    [[nodiscard]] int writeToSingleInputFile(std::ofstream& stream, int n, bool bNoHeader) const;

    /// Name of table n of a set: "aftable7", "aftabl12".
    [[nodiscard]] static std::string suffix(int n);

    bool m_bValid = false; ///< what was read last is a table without fault; needed to write it
    std::string m_header; ///< without white space at its end
    TitleAndControlLine m_control;
    CoefSubTable m_lift;
    CoefSubTable m_drag;
    CoefSubTable m_moment;

    static std::vector<cleanedFile> m_cleanedFiles; ///< in the order of the first calls
};

} // namespace Tavro
