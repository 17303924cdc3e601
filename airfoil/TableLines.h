// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

/// Text lines of numbers in fixed columns, as on punched cards.
///
/// A line is read into fields and can be written back so that it looks as it did. A field of blanks
/// and one behind the end of a short line are missing: not present, value 0. Columns count from 0.
/// Numbers look the same in every locale.  Threads: each object by one thread at a time.
namespace Tavro {

/// What may stand in a number; anything else is mended.
inline constexpr std::string_view goodDoubleChars = "-+.0123456789";
inline constexpr std::string_view goodIntChars = "-+0123456789";
/// What may stand in the counts of a control line, which is never mended.
inline constexpr std::string_view goodControlChars = "0123456789 ";

/// Base of whatever owns such lines: it hears of every repair.
class BaseData {
public:
    BaseData() = default;
    BaseData(const BaseData&) = default;
    BaseData& operator=(const BaseData&) = default;
    virtual ~BaseData() = default;

    /// Asked before the text of a field is mended; false keeps the bad text. This one says
    /// "Changing 'from' to 'to'" on standard output and agrees.
    [[nodiscard]] virtual bool conversionWarning(
        const std::string& from, const std::string& to) const;
};

/// `Fields` numbers of `Width` columns each, from column `FirstColumn` on; when written, that many
/// blanks stand in front.
template <std::size_t Fields, std::size_t Width, std::size_t FirstColumn>
class DoubleLine {
public:
    static constexpr std::size_t kFields = Fields;
    static constexpr std::size_t kWidth = Width;
    static constexpr std::size_t kFirstColumn = FirstColumn;

    DoubleLine();

    /// Reads one line, with or without a carriage return. False if there was none to read; bad and
    /// missing fields are no failure.
    [[nodiscard]] bool readFromFile(std::istream& stream, const BaseData& owner);
    /// Writes all fields in their columns, then two blanks and the label unless it is empty, then a
    /// line end. Leaves the stream set to fixed notation and a blank fill. False if the stream
    /// failed.
    [[nodiscard]] bool writeToFile(std::ostream& stream, const std::string& label) const;
    /// Number of present fields.
    [[nodiscard]] int dataCount() const;

    std::string m_line; ///< as read, without white space at its end
    std::array<double, Fields> m_values {}; ///< 0 where missing
    std::array<bool, Fields> m_present {};
    std::array<int, Fields> m_decimals {}; ///< digits after the point; 2 where missing
    std::array<bool, Fields> m_leadingZero {}; ///< whether 0.5 is written "0.5" and not ".5"
};

extern template class DoubleLine<6, 10, 10>;
extern template class DoubleLine<6, 10, 0>;
extern template class DoubleLine<7, 10, 0>;
extern template class DoubleLine<9, 7, 7>;
extern template class DoubleLine<10, 7, 0>;

class DoubleX6Line : public DoubleLine<6, 10, 10> { };
class DoubleX6NoSpaceLine : public DoubleLine<6, 10, 0> { };
class DoubleX7Line : public DoubleLine<7, 10, 0> { };
class DoubleX9Line : public DoubleLine<9, 7, 7> { };
class DoubleX10Line : public DoubleLine<10, 7, 0> { };

/// `Fields` whole numbers of `Width` columns each, from column 0 on.
template <std::size_t Fields, std::size_t Width>
class IntLine {
public:
    static constexpr std::size_t kFields = Fields;
    static constexpr std::size_t kWidth = Width;
    static constexpr std::size_t kFirstColumn = 0;

    /// As of a line of doubles.
    [[nodiscard]] bool readFromFile(std::istream& stream, const BaseData& owner);
    /// As of a line of doubles; the stream's settings stay.
    [[nodiscard]] bool writeToFile(std::ostream& stream, const std::string& label) const;
    /// Number of present fields.
    [[nodiscard]] int dataCount() const;

    std::string m_line; ///< as read, without white space at its end
    std::array<std::int32_t, Fields> m_values {}; ///< 0 where missing
    std::array<bool, Fields> m_present {};
};

extern template class IntLine<14, 5>;
extern template class IntLine<20, 2>;

class IntX14Line : public IntLine<14, 5> { };
class IntX20Line : public IntLine<20, 2> { };

/// One row of a table on as many lines as it needs: the base line holds the row's key and its first
/// values, the continuation lines the others.
template <typename Base, typename Continuation>
class CoefDataLine : public Base {
public:
    /// Reads a row of `count` values, its key among them, and adds the row's lines to `lineNumber`.
    /// False if a line was not there or the key is missing; the lines behind that one are counted
    /// then, but not read.
    [[nodiscard]] bool readFromFile(
        std::istream& stream, int count, unsigned long long& lineNumber, const BaseData& owner);
    /// Writes the row. A label that is not empty is followed by the running number of each line;
    /// `cardNumber` goes up by the number of lines, also after a failure.
    [[nodiscard]] bool writeToFile(
        std::ostream& stream, const std::string& label, int& cardNumber) const;
    /// Number of present fields on all lines, the key among them.
    [[nodiscard]] int dataCount() const;
    /// The key as `NumToString` prints it; "unknown" if it is missing.
    [[nodiscard]] std::string first() const;

    std::vector<Continuation> m_continuation;
};

extern template class CoefDataLine<DoubleX10Line, DoubleX9Line>;
extern template class CoefDataLine<DoubleX7Line, DoubleX6Line>;

class CoefDataX10Line : public CoefDataLine<DoubleX10Line, DoubleX9Line> { };
class CoefDataX7Line : public CoefDataLine<DoubleX7Line, DoubleX6Line> { };

/// Reads field `index` of a line whose fields are `width` columns wide and begin at column `offset`
/// into element `index` of the four arrays. Text that is no number is mended if the owner agrees.
/// Of what then stands there the leading part that is a number counts, and 0 if there is none.
void extractDouble(const std::string& line, unsigned long long index, unsigned long long width,
    unsigned long long offset, double* values, bool* present, int* decimals, bool* leadingZero,
    const BaseData& owner);

/// A field of `width` columns, right-justified, always with a point; blanks if not `present`. A
/// zero before the point goes if `noLeadingZero` or if that saves a column in need. What is still
/// too long is not cut. Negative `decimals` count as 0.
[[nodiscard]] std::string formatDouble(
    double value, int decimals, unsigned long long width, bool present, bool noLeadingZero);

/// The text with the running number of a card behind it: 0 to 9, A to Z, and from 36 on a form that
/// is no true base 36 (36 gives "1[") and that existing files hold.
[[nodiscard]] std::string cardNumber(unsigned int number, std::string text);

} // namespace Tavro
