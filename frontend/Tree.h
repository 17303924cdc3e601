// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Frontend {

struct Member;

/// A value of a readable case, with the place at which it stands; a tree of them is a file. Lines
/// and columns count from 1; 0 in values that come from no file.
struct Value {
    enum class Kind { Table, Array, Text, Integer, Number, Boolean, Time };

    [[nodiscard]] static Value table();
    [[nodiscard]] static Value array();
    [[nodiscard]] static Value of_text(std::string text);
    [[nodiscard]] static Value of_integer(std::int64_t integer);
    [[nodiscard]] static Value of_number(double number);
    [[nodiscard]] static Value of_boolean(bool boolean);

    /// Of a table: the value of that key; null if there is none.
    [[nodiscard]] const Value* find(const std::string& key) const;
    /// Of a table: a new member at its end.
    Value& add(std::string key, Value value);

    Kind kind = Kind::Table;
    unsigned int line = 0;
    unsigned int column = 0;
    std::string text;
    std::int64_t integer = 0;
    double number = 0.0;
    bool boolean = false;
    std::vector<Value> items; ///< of an array
    std::vector<Member> members; ///< of a table, in the order of the file
    std::string comment; ///< written beside or above the value
    bool inOneLine = false; ///< a table that is written as {...}
    /// Something stands here that could not be understood, which has been reported. Of a whole
    /// file: keys of it may have been lost.
    bool broken = false;
};

/// A key of a table and its value.
struct Member {
    std::string key;
    unsigned int line = 0; ///< of the key
    unsigned int column = 0;
    Value value;
};

/// What a reader would call it: "a table", "an integer".
[[nodiscard]] std::string kind_name(const Value& value);

} // namespace Frontend
