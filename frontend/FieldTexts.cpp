// SPDX-License-Identifier: Apache-2.0
// What a field says of itself in messages, in shown cases and in the manual.
#include "frontend/CaseTree.h"

#include <limits>
#include <type_traits>

namespace Frontend {

namespace {

std::string with_range(const std::string& noun, const Field& field)
{
    const std::string range = range_text(field.range);
    if (range.empty())
        return noun;
    const bool between = range.find(" to ") != std::string::npos;
    return noun + (between ? " from " : " ") + range;
}

template <typename Integer>
std::string integer_text(const Field& field)
{
    if (!range_text(field.range).empty())
        return with_range("an integer", field);
    using Limits = std::numeric_limits<Integer>;
    return "an integer from " + std::to_string(Limits::min()) + " to "
        + std::to_string(Limits::max());
}

struct Expected {
    const Field& field;

    std::string operator()(VRK::Flag* /*flag*/) const { return "true or false"; }
    std::string operator()(double* /*number*/) const { return with_range("a number", field); }
    std::string operator()(std::string* /*text*/) const { return "a text"; }
    std::string operator()(const PathText& /*path*/) const { return "a text"; }
    std::string operator()(std::uint8_t* /*i*/) const { return integer_text<std::uint8_t>(field); }
    std::string operator()(std::int16_t* /*i*/) const { return integer_text<std::int16_t>(field); }
    std::string operator()(std::int32_t* /*i*/) const { return integer_text<std::int32_t>(field); }
    std::string operator()(std::uint32_t* /*i*/) const
    {
        return integer_text<std::uint32_t>(field);
    }
    std::string operator()(const std::vector<std::uint32_t*>& numbers) const
    {
        return with_range("[" + std::to_string(numbers.size()) + " integers]", field);
    }
    std::string operator()(const std::vector<double*>& numbers) const
    {
        return with_range("[" + std::to_string(numbers.size()) + " numbers]", field);
    }
    std::string operator()(const std::vector<double>* /*numbers*/) const
    {
        return with_range("a list of numbers", field);
    }
    std::string operator()(const std::vector<Tavro::Vector<double, 3>>* /*points*/) const
    {
        return "a list of rows [x, y, z]";
    }
    std::string operator()(const std::vector<Tavro::BoundingBox<double, 3>>* /*boxes*/) const
    {
        return "a list of rows [lower x, y, z, upper x, y, z]";
    }
    std::string operator()(const std::vector<Tavro::Facet<double, 3, 3>>* /*facets*/) const
    {
        return "a list of rows of nine numbers";
    }
    std::string operator()(const TwoColumns& /*columns*/) const
    {
        return "a list of rows of two numbers";
    }
    std::string operator()(const ListOfTables& /*tables*/) const { return "tables"; }
    std::string operator()(const Fields& /*fields*/) const { return "a table"; }
};

} // namespace

std::string expected_text(const Field& field)
{
    if (field.choices.empty())
        return std::visit(Expected { field }, field.target);
    std::string names;
    for (const Choice& choice : field.choices)
        names += '"' + std::string(choice.name) + "\", ";
    return names + "or an integer";
}

Value default_value(const Field& field)
{
    const auto number = static_cast<std::int64_t>(field.fallback);
    for (const Choice& choice : field.choices) {
        if (choice.value == number)
            return Value::of_text(choice.name);
    }
    return std::visit(
        [&](const auto& target) {
            using Kind = std::decay_t<decltype(target)>;
            if constexpr (std::is_same_v<Kind, VRK::Flag*>)
                return Value::of_boolean(number != 0);
            else if constexpr (std::is_same_v<Kind, double*>)
                return Value::of_number(field.fallback);
            else if constexpr (std::is_same_v<Kind, std::string*> || std::is_same_v<Kind, PathText>)
                return Value::of_text("");
            else if constexpr (std::is_same_v<Kind, std::vector<double*>>) {
                Value row = Value::array();
                row.items.assign(target.size(), Value::of_number(field.fallback));
                return row;
            } else if constexpr (std::is_same_v<Kind, std::vector<std::uint32_t*>>) {
                Value row = Value::array();
                row.items.assign(target.size(), Value::of_integer(number));
                return row;
            } else if constexpr (std::is_pointer_v<
                                     Kind> && std::is_integral_v<std::remove_pointer_t<Kind>>)
                return Value::of_integer(number);
            else
                return Value::array();
        },
        field.target);
}

} // namespace Frontend
