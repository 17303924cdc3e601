// SPDX-License-Identifier: Apache-2.0
#include "frontend/CasePage.h"

#include "frontend/CaseTree.h"
#include "frontend/TreeText.h"

namespace Frontend {

namespace {

bool is_table(const Field& field)
{
    return std::holds_alternative<Fields>(field.target)
        || std::holds_alternative<ListOfTables>(field.target);
}

std::string row(const Field& field)
{
    const std::string fallback
        = field.required ? "must be given" : '`' + toml_value(default_value(field)) + '`';
    std::string text = "| `" + field.key + "` | " + expected_text(field);
    return text + " | " + field.unit + " | " + fallback + " | " + field.doc + " |\n";
}

void append(std::string& text, const std::string& path, const std::string& doc, bool list,
    const Fields& fields)
{
    text += "\n## `" + std::string(list ? "[[" : "[") + path + (list ? "]]" : "]") + "`\n\n" + doc
        + ".\n";
    bool first = true;
    for (const Field& field : fields) {
        if (is_table(field))
            continue;
        if (first)
            text += "\n| Key | What it is | Unit | Default | Meaning |\n|---|---|---|---|---|\n";
        first = false;
        text += row(field);
    }
    for (const Field& field : fields) {
        const std::string below = path + '.' + field.key;
        if (const auto* table = std::get_if<Fields>(&field.target))
            append(text, below, field.doc, false, *table);
        else if (const auto* tables = std::get_if<ListOfTables>(&field.target)) {
            tables->resize(1);
            append(text, below, field.doc, true, tables->fields(0));
        }
    }
}

} // namespace

std::string case_page_tables()
{
    VRK::ControllerInput record {};
    std::string text = "| Key | What it is | Unit | Default | Meaning |\n|---|---|---|---|---|\n";
    text += "| `" + std::string(kUncheckedKey) + "` | true or false |  | `false` | " + kUncheckedDoc
        + " |\n";
    for (const Field& field : fields_of(record)) {
        if (const auto* tables = std::get_if<ListOfTables>(&field.target)) {
            tables->resize(1);
            Fields fields = tables->fields(0);
            BodySource source;
            if (field.key == "body") {
                for (const Field& extra : body_source_fields(source))
                    fields.push_back(extra);
            }
            append(text, field.key, field.doc, true, fields);
        } else {
            append(text, field.key, field.doc, false, std::get<Fields>(field.target));
        }
    }
    return text;
}

} // namespace Frontend
