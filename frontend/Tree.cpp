// SPDX-License-Identifier: Apache-2.0
#include "frontend/Tree.h"

#include <utility>

namespace Frontend {

Value Value::table() { return {}; }

Value Value::array()
{
    Value value;
    value.kind = Kind::Array;
    return value;
}

Value Value::of_text(std::string text)
{
    Value value;
    value.kind = Kind::Text;
    value.text = std::move(text);
    return value;
}

Value Value::of_integer(std::int64_t integer)
{
    Value value;
    value.kind = Kind::Integer;
    value.integer = integer;
    return value;
}

Value Value::of_number(double number)
{
    Value value;
    value.kind = Kind::Number;
    value.number = number;
    return value;
}

Value Value::of_boolean(bool boolean)
{
    Value value;
    value.kind = Kind::Boolean;
    value.boolean = boolean;
    return value;
}

const Value* Value::find(const std::string& key) const
{
    for (const Member& member : members) {
        if (member.key == key)
            return &member.value;
    }
    return nullptr;
}

Value& Value::add(std::string key, Value value)
{
    members.push_back({ std::move(key), 0, 0, std::move(value) });
    return members.back().value;
}

std::string kind_name(const Value& value)
{
    switch (value.kind) {
    case Value::Kind::Table:
        return "a table";
    case Value::Kind::Array:
        return "a list";
    case Value::Kind::Text:
        return "a text";
    case Value::Kind::Integer:
        return "an integer";
    case Value::Kind::Number:
        return "a number";
    case Value::Kind::Boolean:
        return "true or false";
    case Value::Kind::Time:
        return "a date or time";
    }
    return "a value";
}

} // namespace Frontend
