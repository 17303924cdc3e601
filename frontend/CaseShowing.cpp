// SPDX-License-Identifier: Apache-2.0
#include "frontend/CaseChecks.h"
#include "frontend/CaseTree.h"
#include "frontend/ValueText.h"

#include <initializer_list>

namespace Frontend {

namespace {

Value table_value(const Fields& fields);

Value row(std::initializer_list<Tavro::Vector<double, 3>> points)
{
    Value value = Value::array();
    for (const auto& point : points) {
        for (std::size_t i = 0; i < 3; ++i)
            value.items.push_back(value_of_double(point[i]));
    }
    return value;
}

struct Shown {
    const Field& field;

    Value operator()(VRK::Flag* flag) const
    {
        // Any other byte must come back as it was.
        return flag->byte() > 1 ? Value::of_integer(flag->byte()) : Value::of_boolean(*flag);
    }
    template <typename Integer>
    Value operator()(Integer* integer) const
    {
        return Value::of_integer(*integer);
    }
    // NOLINTNEXTLINE(readability-non-const-parameter): to const the template above would be nearer
    Value operator()(double* number) const { return value_of_double(*number); }
    Value operator()(std::string* text) const { return value_of_bytes(*text); }
    Value operator()(const PathText& path) const { return value_of_bytes(path.path->Get()); }
    template <typename Number>
    Value operator()(const std::vector<Number*>& numbers) const
    {
        Value value = Value::array();
        for (Number* number : numbers)
            value.items.push_back((*this)(number));
        return value;
    }
    Value operator()(std::vector<double>* numbers) const
    {
        Value value = Value::array();
        for (const double number : *numbers)
            value.items.push_back(value_of_double(number));
        return value;
    }
    Value operator()(std::vector<Tavro::Vector<double, 3>>* points) const
    {
        Value value = Value::array();
        for (const auto& point : *points)
            value.items.push_back(row({ point }));
        return value;
    }
    Value operator()(std::vector<Tavro::BoundingBox<double, 3>>* boxes) const
    {
        Value value = Value::array();
        for (const auto& box : *boxes)
            value.items.push_back(row({ box.m_vMin, box.m_vMax }));
        return value;
    }
    Value operator()(std::vector<Tavro::Facet<double, 3, 3>>* facets) const
    {
        Value value = Value::array();
        for (const auto& facet : *facets)
            value.items.push_back(row({ facet[0], facet[1], facet[2] }));
        return value;
    }
    Value operator()(const TwoColumns& columns) const
    {
        Value value = Value::array();
        for (std::size_t i = 0; i < columns.first->size(); ++i) {
            Value& pair = value.items.emplace_back(Value::array());
            pair.items
                = { value_of_double((*columns.first)[i]), value_of_double((*columns.second)[i]) };
        }
        return value;
    }
    Value operator()(const ListOfTables& list) const
    {
        Value value = Value::array();
        for (std::size_t i = 0; i < list.size(); ++i)
            value.items.push_back(table_value(list.fields(i)));
        return value;
    }
    Value operator()(const Fields& fields) const { return table_value(fields); }
};

/// The name of the number, if it has one.
Value with_name(Value value, const Field& field)
{
    const std::int64_t number
        = value.kind == Value::Kind::Boolean ? (value.boolean ? 1 : 0) : value.integer;
    for (const Choice& choice : field.choices) {
        if (choice.value == number)
            return Value::of_text(choice.name);
    }
    return value;
}

Value table_value(const Fields& fields)
{
    Value table = Value::table();
    for (const Field& field : fields) {
        Value value = std::visit(Shown { field }, field.target);
        if (!field.choices.empty())
            value = with_name(std::move(value), field);
        value.comment = field.unit.empty() ? field.doc : field.unit + "; " + field.doc;
        table.add(field.key, std::move(value));
    }
    return table;
}

} // namespace

Value show_case_tree(const VRK::ControllerInput& record)
{
    VRK::ControllerInput copy = record; // the table is bound to a record that may be written to
    Value tree = table_value(fields_of(copy));
    Diagnostics diagnostics;
    check_case(read_case_tree(tree, "", diagnostics), "", diagnostics);
    if (!diagnostics.failed())
        return tree;
    Value mark = Value::of_boolean(true);
    mark.comment = std::string(kUncheckedDoc) + "; without this line they are errors";
    tree.members.insert(tree.members.begin(), { kUncheckedKey, 0, 0, std::move(mark) });
    return tree;
}

} // namespace Frontend
