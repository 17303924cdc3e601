// SPDX-License-Identifier: Apache-2.0
#include "frontend/BodyFile.h"
#include "frontend/CaseTree.h"
#include "frontend/NearestName.h"
#include "frontend/TextFile.h"
#include "frontend/ValueText.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace Frontend {

namespace {

using Kind = Value::Kind;

std::string quoted(const std::string& text) { return '"' + text + '"'; }

constexpr const char* kEntryOf = "an entry of ";

/// How a field is called in a message.
std::string named(const Field& field)
{
    const std::string entry = kEntryOf;
    return field.key.starts_with(entry) ? entry + quoted(field.key.substr(entry.size()))
                                        : quoted(field.key);
}

/// How a value reads in a message.
std::string shown(const Value& value)
{
    constexpr std::size_t kLongest = 40;
    switch (value.kind) {
    case Kind::Integer:
        return std::to_string(value.integer);
    case Kind::Number:
        return number_text(value.number);
    case Kind::Boolean:
        return value.boolean ? "true" : "false";
    case Kind::Text:
        return value.text.size() > kLongest ? "a long text" : quoted(value.text);
    default:
        return kind_name(value);
    }
}

class Reader {
public:
    Reader(CaseTree& result, std::string file, Diagnostics& diagnostics)
        : m_case(result)
        , m_file(std::move(file))
        , m_diagnostics(diagnostics)
    {
    }

    void whole(const Value& tree)
    {
        m_case.whole = { m_file };
        m_case.incomplete = tree.broken;
        if (const Value* mark = tree.find(kUncheckedKey)) {
            if (mark->kind == Kind::Boolean)
                m_case.unchecked = mark->boolean;
            else if (!mark->broken)
                fault(*mark, quoted(kUncheckedKey) + " is " + shown(*mark), "true or false");
        }
        const Fields fields = fields_of(m_case.record);
        members(tree, fields, "", { kUncheckedKey });
        for (const Field& field : fields)
            if (tree.find(field.key) == nullptr)
                absent(field, "", m_case.whole);
    }

private:
    [[nodiscard]] Place at(const Value& value) const
    {
        return { m_file, value.line, value.column };
    }

    void fault(const Value& value, const std::string& what, const std::string& expected)
    {
        m_diagnostics.error(at(value), what, expected);
    }
    void fault(const Value& value, const Field& field)
    {
        fault(value, named(field) + " is " + shown(value), expected_text(field));
    }

    /// A path without the numbers of entries, as it stands in the head of a table.
    static std::string plain(const std::string& path)
    {
        std::string name;
        for (std::size_t i = 0; i < path.size(); ++i) {
            if (path[i] == '[')
                i = path.find(']', i);
            else
                name += path[i];
        }
        return name;
    }
    static std::string heading(const std::string& path)
    {
        if (path.empty())
            return "the case";
        return path.ends_with(']') ? "[[" + plain(path) + "]]" : '[' + plain(path) + ']';
    }

    /// Reads what is there, and tells of keys that nobody knows.
    void members(const Value& table, const Fields& fields, const std::string& path,
        const std::vector<std::string>& others = {})
    {
        for (const Member& member : table.members) {
            const Field* known = nullptr;
            std::vector<std::string> names = others;
            for (const Field& field : fields) {
                names.push_back(field.key);
                if (field.key == member.key)
                    known = &field;
            }
            const std::string below = joined(path, member.key);
            const Place place { m_file, member.line, member.column };
            // What is found later is about the value, as what reading it finds is.
            m_case.places[below] = member.value.line > 0 ? at(member.value) : place;
            if (known != nullptr) {
                take(member.value, *known, below);
            } else if (std::find(others.begin(), others.end(), member.key) == others.end()) {
                const std::string near = nearest_name(member.key, names);
                m_diagnostics.error(place,
                    "there is no key " + quoted(member.key) + " in " + heading(path),
                    near.empty() ? "a key that `vortik check --keys` lists" : quoted(near));
            }
        }
    }

    void table(const Value& value, const Fields& fields, const std::string& path)
    {
        members(value, fields, path);
        for (const Field& field : fields)
            if (value.find(field.key) == nullptr)
                absent(field, path, at(value));
    }

    static std::string joined(const std::string& path, const std::string& key)
    {
        return path.empty() ? key : path + '.' + key;
    }

    /// A field that the file does not have gets its default, if it has one.
    void absent(const Field& field, const std::string& path, const Place& place)
    {
        const std::string below = joined(path, field.key);
        if (const Fields* fields = std::get_if<Fields>(&field.target)) {
            // The keys of a table that is left out are left out too.
            for (const Field& inner : *fields)
                absent(inner, below, place);
            return;
        }
        if (!field.required) {
            read(default_value(field), field, below);
            return;
        }
        m_case.faulty.insert(below);
        if (!m_case.incomplete) // else it may stand where nothing could be understood
            m_diagnostics.error(
                place, heading(path) + " lacks the key " + quoted(field.key), expected_text(field));
    }

    /// A field that the file has; if that is wrong it gets its default, and nothing follows from
    /// it.
    void take(const Value& value, const Field& field, const std::string& path)
    {
        const bool nested = std::holds_alternative<Fields>(field.target)
            || std::holds_alternative<ListOfTables>(field.target);
        const std::size_t before = m_diagnostics.errors();
        if (nested || !value.broken)
            read(value, field, path);
        if (nested || (!value.broken && m_diagnostics.errors() == before))
            return;
        m_case.faulty.insert(path);
        if (!field.required)
            read(default_value(field), field, path);
    }

    /// A table or list of tables that is none; what would be in it has been left out unseen.
    void take_out(const Value& value, const Field& field, const std::string& path,
        const std::string& what, const std::string& expected)
    {
        if (!value.broken)
            fault(value, what, expected);
        m_case.faulty.insert(path);
        const bool incomplete = std::exchange(m_case.incomplete, true);
        if (const Fields* fields = std::get_if<Fields>(&field.target)) {
            for (const Field& inner : *fields)
                absent(inner, path, at(value));
        }
        m_case.incomplete = incomplete;
    }

    void read(const Value& value, const Field& field, const std::string& path)
    {
        std::visit(
            [&](const auto& target) { this->into(target, value, field, path); }, field.target);
    }

    /// The number of a choice's name; nothing if the value is no name.
    static std::optional<std::int64_t> chosen(const Value& value, const Field& field)
    {
        for (const Choice& choice : field.choices) {
            if (value.kind == Kind::Text && value.text == choice.name)
                return choice.value;
        }
        return std::nullopt;
    }

    void check_range(double number, const Value& value, const Field& field)
    {
        const Range& range = field.range;
        const bool low = range.above ? number > range.least : number >= range.least;
        if (!std::isfinite(number)) {
            if (value.kind != Kind::Integer)
                out_of_range(value, field);
        } else if (!low || number > range.most) {
            out_of_range(value, field);
        }
    }
    void out_of_range(const Value& value, const Field& field)
    {
        const std::string what = named(field) + " is " + shown(value);
        if (m_case.unchecked)
            m_diagnostics.warning(at(value), what + "; expected " + expected_text(field));
        else
            fault(value, what, expected_text(field));
    }

    template <typename Integer>
    void integer(Integer& target, const Value& value, const Field& field)
    {
        auto number = chosen(value, field);
        if (!number && value.kind == Kind::Integer)
            number = value.integer;
        using Limits = std::numeric_limits<Integer>;
        if (!number || *number < std::int64_t { Limits::min() }
            || *number > std::int64_t { Limits::max() }) {
            fault(value, field);
            return;
        }
        check_range(static_cast<double>(*number), value, field);
        target = static_cast<Integer>(*number);
    }
    void into(std::uint8_t* target, const Value& value, const Field& field, const std::string&)
    {
        integer(*target, value, field);
    }
    void into(std::int16_t* target, const Value& value, const Field& field, const std::string&)
    {
        integer(*target, value, field);
    }
    void into(std::int32_t* target, const Value& value, const Field& field, const std::string&)
    {
        integer(*target, value, field);
    }
    void into(std::uint32_t* target, const Value& value, const Field& field, const std::string&)
    {
        integer(*target, value, field);
    }

    void into(VRK::Flag* target, const Value& value, const Field& field, const std::string&)
    {
        auto byte = chosen(value, field);
        if (!byte && value.kind == Kind::Integer)
            byte = value.integer;
        if (!byte && value.kind == Kind::Boolean && field.choices.empty())
            byte = value.boolean ? 1 : 0;
        if (!byte || *byte < 0 || *byte > std::numeric_limits<unsigned char>::max())
            fault(value, field);
        else
            *target = VRK::Flag::from_byte(static_cast<unsigned char>(*byte));
    }

    void into(double* target, const Value& value, const Field& field, const std::string&)
    {
        const auto number = double_of_value(value);
        if (!number) {
            fault(value, field);
            return;
        }
        check_range(*number, value, field);
        *target = *number;
    }

    void into(std::string* target, const Value& value, const Field& field, const std::string&)
    {
        const auto bytes = bytes_of_value(value);
        if (!bytes)
            fault(value, field);
        else
            *target = *bytes;
    }

    void into(
        const PathText& target, const Value& value, const Field& field, const std::string& path)
    {
        std::string text;
        into(&text, value, field, path);
        // As it stands: who reads the case file normalises it, on the machine where it counts.
        *target.path = Tavro::FilePath();
        *target.path += text;
    }

    /// Whether the value is a list of that many entries; else that is reported.
    bool is_row(const Value& value, std::size_t size, const Field& field, const std::string& entry)
    {
        if (value.kind == Kind::Array && value.items.size() == size)
            return true;
        const std::string what = value.kind == Kind::Array
            ? " has " + std::to_string(value.items.size())
                + (value.items.size() == 1 ? " entry" : " entries")
            : " is " + shown(value);
        fault(value, entry + quoted(field.key) + what, row_text(field, size));
        return false;
    }
    static std::string row_text(const Field& field, std::size_t size)
    {
        if (std::holds_alternative<std::vector<std::uint32_t*>>(field.target)
            || std::holds_alternative<std::vector<double*>>(field.target))
            return expected_text(field);
        return std::to_string(size) + " numbers";
    }

    template <typename Number>
    void into(const std::vector<Number*>& targets, const Value& value, const Field& field,
        const std::string& path)
    {
        if (!is_row(value, targets.size(), field, ""))
            return;
        for (std::size_t i = 0; i < targets.size(); ++i)
            entry(targets[i], value.items[i], field, path);
    }
    /// An entry of a list; what is expected of it is not what is expected of the list.
    template <typename Number>
    void entry(Number* target, const Value& value, const Field& field, const std::string& path)
    {
        Field one { kEntryOf + field.key, target, "", "", field.range };
        into(target, value, one, path);
    }

    bool is_list(const Value& value, const Field& field)
    {
        if (value.kind != Kind::Array)
            fault(value, field);
        return value.kind == Kind::Array;
    }

    void into(std::vector<double>* target, const Value& value, const Field& field,
        const std::string& path)
    {
        if (!is_list(value, field))
            return;
        target->assign(value.items.size(), 0.0);
        for (std::size_t i = 0; i < target->size(); ++i)
            entry(&(*target)[i], value.items[i], field, path);
    }

    /// A list whose entries are rows of so many numbers.
    template <typename TakeRow>
    void rows(const Value& value, const Field& field, const std::string& path, std::size_t size,
        TakeRow take)
    {
        if (!is_list(value, field))
            return;
        std::vector<double> row(size);
        const Field one { kEntryOf + field.key, row.data(), "", "" };
        for (const Value& item : value.items) {
            if (!is_row(item, size, field, "a row of "))
                continue;
            for (std::size_t i = 0; i < size; ++i)
                into(&row[i], item.items[i], one, path);
            take(row);
        }
    }
    static Tavro::Vector<double, 3> point(const std::vector<double>& row, std::size_t first)
    {
        return { row[first], row[first + 1], row[first + 2] };
    }
    void into(std::vector<Tavro::Vector<double, 3>>* target, const Value& value, const Field& field,
        const std::string& path)
    {
        target->clear();
        rows(value, field, path, 3, [&](const auto& row) { target->push_back(point(row, 0)); });
    }
    void into(std::vector<Tavro::BoundingBox<double, 3>>* target, const Value& value,
        const Field& field, const std::string& path)
    {
        target->clear();
        rows(value, field, path, 6, [&](const auto& row) {
            target->push_back({ point(row, 0), point(row, 3) });
        });
    }
    void into(std::vector<Tavro::Facet<double, 3, 3>>* target, const Value& value,
        const Field& field, const std::string& path)
    {
        target->clear();
        rows(value, field, path, 9, [&](const auto& row) {
            target->push_back({ point(row, 0), point(row, 3), point(row, 6) });
        });
    }
    void into(
        const TwoColumns& target, const Value& value, const Field& field, const std::string& path)
    {
        target.first->clear();
        target.second->clear();
        rows(value, field, path, 2, [&](const auto& row) {
            target.first->push_back(row[0]);
            target.second->push_back(row[1]);
        });
    }

    void into(const Fields& target, const Value& value, const Field& field, const std::string& path)
    {
        if (value.kind != Kind::Table)
            take_out(value, field, path, "[" + field.key + "] is " + shown(value), "a table");
        else
            table(value, target, path);
    }

    void into(
        const ListOfTables& target, const Value& value, const Field& field, const std::string& path)
    {
        if (value.kind != Kind::Array) {
            take_out(value, field, path, quoted(field.key) + " is " + shown(value),
                "tables, each under [[" + plain(path) + "]]");
            return;
        }
        target.resize(value.items.size());
        for (std::size_t i = 0; i < value.items.size(); ++i) {
            const Value& item = value.items[i];
            const std::string below = path + '[' + std::to_string(i) + ']';
            m_case.places[below] = at(item);
            if (item.kind != Kind::Table)
                take_out(item, Field { below, target.fields(i), "", "" }, below,
                    "an entry of " + quoted(field.key) + " is " + shown(item), "a table");
            else if (path == "body")
                body(item, target.fields(i), m_case.record.m_vecBodies[i], below);
            else
                table(item, target.fields(i), below);
        }
    }

    void body(
        const Value& value, const Fields& fields, VRK::BodyData& target, const std::string& path)
    {
        BodySource source;
        Fields all = fields;
        for (const Field& field : body_source_fields(source))
            all.push_back(field);
        table(value, all, path);
        const Value* file = value.find("file");
        const Value* facets = value.find("facets");
        const std::size_t before = m_diagnostics.errors();
        if (file == nullptr && facets == nullptr) {
            if (!m_case.incomplete)
                m_diagnostics.error(at(value), heading(path) + " has no triangles",
                    R"("file", the name of an STL or OBJ file, or "facets")");
            m_case.faulty.insert(path + ".facets");
        } else if (file != nullptr && facets != nullptr) {
            fault(*file, R"("file" and "facets" are given for one body)", "one of them");
        } else if (file != nullptr && m_case.sound(path + ".file")) {
            m_case.bodyFiles.push_back(path_from(directory_around(m_file), from_home(source.file)));
            read_body_file(m_case.bodyFiles.back(), at(*file), m_diagnostics, target.m_vecFacets);
        }
        bool sound = m_diagnostics.errors() == before;
        for (const char* key : { ".file", ".scale", ".rotate", ".translate" })
            sound = sound && m_case.sound(path + key);
        if (!sound) // where the triangles are, if there are any, is not where they were to be
            m_case.faulty.insert(path + ".facets");
        move_facets(source, target.m_vecFacets);
    }

    CaseTree& m_case;
    std::string m_file;
    Diagnostics& m_diagnostics;
};

} // namespace

Place CaseTree::place(const std::string& path) const
{
    // What is not there lacks in the table around it.
    for (std::string there = path; !there.empty();) {
        if (const auto found = places.find(there); found != places.end())
            return found->second;
        const auto end = there.find_last_of(".[");
        there.resize(end == std::string::npos ? 0 : end);
    }
    return whole;
}

bool CaseTree::sound(const std::string& path) const
{
    for (std::size_t end = 0; end != std::string::npos;) {
        end = path.find_first_of(".[", end + 1);
        if (faulty.contains(path.substr(0, end)))
            return false;
    }
    return true;
}

void CaseTree::fault(Diagnostics& diagnostics, const std::string& path, const std::string& what,
    const std::string& expected) const
{
    if (unchecked)
        diagnostics.warning(place(path), what + "; expected " + expected);
    else
        diagnostics.error(place(path), what, expected);
}

CaseTree read_case_tree(const Value& tree, const std::string& file, Diagnostics& diagnostics)
{
    CaseTree result;
    Reader(result, file, diagnostics).whole(tree);
    return result;
}

} // namespace Frontend
