// SPDX-License-Identifier: Apache-2.0
// The one source that knows the TOML library: it is long to compile and its tree is not ours.
#include "frontend/TomlReading.h"

#include "frontend/TomlStatements.h"

// Where the library is compiled from its headers it checks itself, and would end the program at
// some of the very texts that it reports as faulty a step later.
#define TOML_ASSERT(expr) static_assert(true) // NOLINT(cppcoreguidelines-macro-usage): its own way
#include <toml++/toml.h>

#include <algorithm>
#include <set>
#include <tuple>
#include <utility>

namespace Frontend {

namespace {

/// The library goes down a tree by calling itself, and would find no end of its stack in time.
toml::table parsed(const std::string& text, const std::string& name = {})
{
    const auto deep = too_deep_key(text);
    if (!deep)
        return toml::parse(text, name);
    const toml::source_position place { static_cast<toml::source_index>(deep->line + 1),
        static_cast<toml::source_index>(deep->column + 1) };
    throw toml::parse_error(
        "tables are nested too deep here", toml::source_region { place, place, {} });
}

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

/// Marks what stands in the place of values that could not be understood.
void mark_broken(Value& value, const std::set<unsigned int>& lines)
{
    if (value.kind == Value::Kind::Time && lines.contains(value.line))
        value.broken = true;
    for (Member& member : value.members)
        mark_broken(member.value, lines);
    for (Value& item : value.items)
        mark_broken(item, lines);
}

/// A text whose faults are reported and taken out of it, one after the other, until what is left
/// can be understood.
class FaultyToml {
public:
    FaultyToml(const std::string& text, std::string name, Diagnostics& diagnostics)
        : m_name(std::move(name))
        , m_diagnostics(diagnostics)
        , m_lines(lines_of(text))
        , m_statements(statements_of(m_lines))
    {
    }

    std::optional<Value> rest()
    {
        for (std::size_t i = 0; i < m_statements.size(); ++i) {
            const Statement& one = m_statements[i];
            const auto error = fault_of(joined(one.first, one.end));
            if (!error)
                continue;
            if (!report(*error, one.first))
                return std::nullopt;
            mend(i);
        }
        // What is left are keys and tables that are given twice.
        while (true) {
            try {
                Value tree = tree_of(parsed(joined(0, m_lines.size()), m_name));
                mark_broken(tree, m_placeholders);
                tree.broken = m_incomplete;
                return tree;
            } catch (const toml::parse_error& error) {
                const std::size_t at = statement_at(error.source().begin.line);
                if (!report(error, 0) || at == m_statements.size())
                    return std::nullopt;
                take_out(at);
            }
        }
    }

private:
    static std::optional<toml::parse_error> fault_of(const std::string& text)
    {
        try {
            (void)parsed(text); // only whether it can be understood
        } catch (const toml::parse_error& error) {
            return error;
        }
        return std::nullopt;
    }

    /// False if there are so many that this is another kind of file.
    bool report(const toml::parse_error& error, std::size_t linesBefore)
    {
        constexpr std::size_t kMost = 20;
        const auto begin = error.source().begin;
        const Place place { m_name, begin.line + static_cast<unsigned int>(linesBefore),
            begin.column };
        m_diagnostics.error(place, "this is not TOML: " + std::string(error.description()));
        if (++m_reported < kMost)
            return true;
        m_diagnostics.error(place, "after so many faults the rest has not been looked at");
        return false;
    }

    [[nodiscard]] std::string joined(std::size_t first, std::size_t end) const
    {
        std::string text;
        for (std::size_t i = first; i < end; ++i)
            text += m_lines[i] + '\n';
        return text;
    }
    [[nodiscard]] std::size_t statement_at(unsigned int line) const
    {
        std::size_t at = 0;
        while (at < m_statements.size() && m_statements[at].end < line)
            ++at;
        return at;
    }
    void blank(const Statement& statement)
    {
        for (std::size_t i = statement.first; i < statement.end; ++i)
            m_lines[i].clear();
    }

    /// Keeps of a statement what can be guessed: the table that it begins, or that there is a key.
    void mend(std::size_t at)
    {
        const Statement& one = m_statements[at];
        const std::string& line = m_lines[one.first];
        // No key of a case is a date, so nothing else is taken for it.
        const std::string guess = one.head ? mended_head(line)
            : key_part(line).empty()       ? ""
                                           : key_part(line) + " 0001-01-01";
        if (guess.empty() || fault_of(guess)) {
            m_incomplete = true; // it may have been any key
            take_out(at);
            return;
        }
        blank(one);
        m_lines[one.first] = guess;
        if (!one.head)
            m_placeholders.insert(static_cast<unsigned int>(one.first + 1));
    }

    /// Without its head a table's keys would be those of the table before it.
    void take_out(std::size_t at)
    {
        const bool head = m_statements[at].head;
        m_incomplete = m_incomplete || head;
        blank(m_statements[at]);
        for (++at; head && at < m_statements.size() && !m_statements[at].head; ++at)
            blank(m_statements[at]);
    }

    std::string m_name;
    Diagnostics& m_diagnostics;
    std::vector<std::string> m_lines;
    std::vector<Statement> m_statements;
    std::set<unsigned int> m_placeholders; ///< lines, from 1
    std::size_t m_reported = 0;
    bool m_incomplete = false;
};

} // namespace

std::optional<Value> parse_toml(
    const std::string& text, const std::string& name, Diagnostics& diagnostics)
{
    try {
        return tree_of(parsed(text, name));
    } catch (const toml::parse_error&) {
        return FaultyToml(text, name, diagnostics).rest();
    }
}

} // namespace Frontend
