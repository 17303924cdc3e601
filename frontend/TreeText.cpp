// SPDX-License-Identifier: Apache-2.0
#include "frontend/TreeText.h"

#include "frontend/ValueText.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace Frontend {

namespace {

using Kind = Value::Kind;

/// Escapes what both languages want escaped. A line end stays in a text of many lines.
std::string escaped(std::string_view text, bool manyLines)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            result += '\\';
            result += c;
        } else if (c == '\n') {
            result += manyLines ? "\n" : "\\n";
        } else if (byte < 0x20 || byte == 0x7F) {
            result += "\\u00";
            result += kDigits[byte / 16];
            result += kDigits[byte % 16];
        } else {
            result += c;
        }
    }
    return result;
}

std::string in_quotes(std::string_view text)
{
    const bool manyLines = std::count(text.begin(), text.end(), '\n') > 1;
    // The line end behind the opening quotes is not part of the text.
    return manyLines ? "\"\"\"\n" + escaped(text, true) + R"(""")"
                     : '"' + escaped(text, false) + '"';
}

bool has_headers(const Value& value)
{
    const auto isTable
        = [](const Value& item) { return item.kind == Kind::Table && !item.inOneLine; };
    if (value.kind == Kind::Array)
        return !value.items.empty() && std::all_of(value.items.begin(), value.items.end(), isTable);
    return isTable(value);
}

void append_array(std::string& text, const Value& array)
{
    const bool rows = std::any_of(array.items.begin(), array.items.end(),
        [](const Value& item) { return item.kind == Kind::Array; });
    text += '[';
    for (std::size_t i = 0; i < array.items.size(); ++i) {
        if (rows)
            text += "\n    ";
        text += toml_value(array.items[i]);
        if (rows)
            text += ',';
        else if (i + 1 < array.items.size())
            text += ", ";
    }
    text += rows ? "\n]" : "]";
}

void append_table(std::string& text, const std::string& path, const Value& table)
{
    for (const Member& member : table.members) {
        if (has_headers(member.value))
            continue;
        const std::string value = toml_value(member.value);
        const bool oneLine = value.find('\n') == std::string::npos;
        if (!member.value.comment.empty() && !oneLine)
            text += "# " + member.value.comment + '\n';
        text += member.key + " = " + value;
        if (!member.value.comment.empty() && oneLine)
            text += " # " + member.value.comment;
        text += '\n';
    }
    for (const Member& member : table.members) {
        if (!has_headers(member.value))
            continue;
        const std::string below = path.empty() ? member.key : path + '.' + member.key;
        if (!member.value.comment.empty())
            text += "\n# " + member.value.comment;
        if (member.value.kind == Kind::Table) {
            text += "\n[" + below + "]\n";
            append_table(text, below, member.value);
            continue;
        }
        for (const Value& item : member.value.items) {
            text += "\n[[" + below + "]]\n";
            append_table(text, below, item);
        }
    }
}

void append_json(std::string& text, const Value& value, std::size_t depth);

void append_json_list(std::string& text, const Value& value, std::size_t depth)
{
    const bool isTable = value.kind == Kind::Table;
    const std::size_t size = isTable ? value.members.size() : value.items.size();
    // Numbers in a row stay in a line.
    const bool inLine = !isTable
        && std::none_of(value.items.begin(), value.items.end(),
            [](const Value& item) { return item.kind == Kind::Table || item.kind == Kind::Array; });
    text += isTable ? '{' : '[';
    for (std::size_t i = 0; i < size; ++i) {
        if (i > 0)
            text += inLine ? ", " : ",";
        if (!inLine)
            text += '\n' + std::string(2 * depth + 2, ' ');
        if (isTable)
            text += '"' + escaped(value.members[i].key, false) + "\": ";
        append_json(text, isTable ? value.members[i].value : value.items[i], depth + 1);
    }
    if (size > 0 && !inLine)
        text += '\n' + std::string(2 * depth, ' ');
    text += isTable ? '}' : ']';
}

void append_json(std::string& text, const Value& value, std::size_t depth)
{
    switch (value.kind) {
    case Kind::Table:
    case Kind::Array:
        append_json_list(text, value, depth);
        break;
    case Kind::Text:
        text += '"' + escaped(value.text, false) + '"';
        break;
    case Kind::Number:
        text += std::isfinite(value.number) ? number_text(value.number)
                                            : '"' + number_text(value.number) + '"';
        break;
    default:
        text += toml_value(value);
    }
}

} // namespace

std::string toml_value(const Value& value)
{
    std::string text;
    switch (value.kind) {
    case Kind::Text:
        return in_quotes(value.text);
    case Kind::Integer:
        return std::to_string(value.integer);
    case Kind::Number:
        return number_text(value.number);
    case Kind::Boolean:
        return value.boolean ? "true" : "false";
    case Kind::Array:
        append_array(text, value);
        return text;
    case Kind::Table:
        for (const Member& member : value.members)
            text += (text.empty() ? " " : ", ") + member.key + " = " + toml_value(member.value);
        return '{' + text + (text.empty() ? "}" : " }");
    case Kind::Time:
        break; // no field of a case is one
    }
    return text;
}

std::string toml_text(const Value& tree)
{
    std::string text;
    if (!tree.comment.empty())
        text += "# " + tree.comment + "\n";
    append_table(text, "", tree);
    if (text.starts_with('\n')) // before the first table
        text.erase(0, 1);
    return text;
}

std::string json_text(const Value& tree)
{
    std::string text;
    append_json(text, tree, 0);
    return text + '\n';
}

} // namespace Frontend
