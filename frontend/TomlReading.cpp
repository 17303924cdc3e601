// SPDX-License-Identifier: Apache-2.0
// The one source that knows the TOML library: it is long to compile and its tree is not ours.
#include "frontend/TomlReading.h"

#include "frontend/TextFile.h"

#include <toml++/toml.h>

#include <algorithm>
#include <tuple>
#include <utility>

namespace Frontend {

namespace {

Value tree_of(const toml::node& node);

void set_place(Value& value, const toml::node& node)
{
    value.line = node.source().begin.line;
    value.column = node.source().begin.column;
}

Value table_of(const toml::table& table)
{
    Value value = Value::table();
    value.inOneLine = table.is_inline();
    for (const auto& [key, node] : table) {
        const auto place = key.source().begin;
        value.members.push_back(
            { std::string(key.str()), place.line, place.column, tree_of(node) });
    }
    // The library sorts by name; people read in the order of the file.
    std::stable_sort(
        value.members.begin(), value.members.end(), [](const Member& a, const Member& b) {
            return std::tie(a.line, a.column) < std::tie(b.line, b.column);
        });
    return value;
}

Value array_of(const toml::array& array)
{
    Value value = Value::array();
    value.items.reserve(array.size());
    for (const toml::node& node : array)
        value.items.push_back(tree_of(node));
    return value;
}

Value tree_of(const toml::node& node)
{
    Value value;
    switch (node.type()) {
    case toml::node_type::table:
        value = table_of(*node.as_table());
        break;
    case toml::node_type::array:
        value = array_of(*node.as_array());
        break;
    case toml::node_type::string:
        value = Value::of_text(node.as_string()->get());
        break;
    case toml::node_type::integer:
        value = Value::of_integer(node.as_integer()->get());
        break;
    case toml::node_type::floating_point:
        value = Value::of_number(node.as_floating_point()->get());
        break;
    case toml::node_type::boolean:
        value = Value::of_boolean(node.as_boolean()->get());
        break;
    default:
        value.kind = Value::Kind::Time;
    }
    set_place(value, node);
    return value;
}

} // namespace

std::optional<Value> parse_toml(
    const std::string& text, const std::string& name, Diagnostics& diagnostics)
{
    try {
        return tree_of(toml::parse(text, name));
    } catch (const toml::parse_error& error) {
        const auto place = error.source().begin;
        diagnostics.error({ name, place.line, place.column },
            "this is not TOML: " + std::string(error.description()));
        return std::nullopt;
    }
}

std::optional<Value> read_toml(const std::string& path, Diagnostics& diagnostics)
{
    const auto text = read_text(path, diagnostics);
    return text ? parse_toml(*text, path, diagnostics) : std::nullopt;
}

} // namespace Frontend
