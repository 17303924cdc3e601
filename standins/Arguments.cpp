// SPDX-License-Identifier: Apache-2.0
#include "standins/Arguments.h"

#include "standins/Refusal.h"
#include "standins/cards/Numbers.h"

namespace Standins {

namespace {

// Empty, or what is wrong with the value.
std::string fault_of_value(const std::string& value, ArgumentKind kind)
{
    if (kind != ArgumentKind::Flag && value.empty())
        return "no value";
    switch (kind) {
    case ArgumentKind::Flag:
    case ArgumentKind::Text:
        return "";
    case ArgumentKind::Directory:
        return value.back() == '/' ? "" : "not a directory that ends in \"/\"";
    case ArgumentKind::FileName:
        return value.find('/') == std::string::npos ? "" : "not a plain file name";
    case ArgumentKind::Number:
        return Numbers::unsigned_of(value) ? "" : "not an unsigned number";
    case ArgumentKind::Count:
        return Numbers::unsigned_of(value).value_or(0) > 0 ? "" : "not a number above 0";
    case ArgumentKind::Real:
        return Numbers::general_of(value) ? "" : "not a number of six significant digits";
    case ArgumentKind::Switch:
        return value == "0" || value == "1" ? "" : "neither 0 nor 1";
    }
    return "";
}

bool is_of_form(const std::string& word, const ArgumentForm& form)
{
    return form.m_kind == ArgumentKind::Flag ? word == form.m_strKey
                                             : word.starts_with(form.m_strKey);
}

const ArgumentForm& form_of(const std::string& word, const std::vector<ArgumentForm>& forms)
{
    for (const ArgumentForm& form : forms)
        if (is_of_form(word, form))
            return form;
    throw Refusal("unknown argument " + word);
}

} // namespace

Arguments::Arguments(const std::vector<std::string>& words, const std::vector<ArgumentForm>& forms)
{
    for (const std::string& word : words) {
        const ArgumentForm& form = form_of(word, forms);
        const std::string value = word.substr(form.m_strKey.size());
        if (const std::string fault = fault_of_value(value, form.m_kind); !fault.empty())
            throw Refusal("argument " + word + ": " + fault);
        if (!m_mapValues.emplace(form.m_strKey, value).second)
            throw Refusal("argument " + form.m_strKey + " is given twice");
    }
    for (const ArgumentForm& form : forms)
        if (form.m_bRequired && !has(form.m_strKey))
            throw Refusal("argument " + form.m_strKey + " is missing");
}

const std::string& Arguments::text(const std::string& key) const { return m_mapValues.at(key); }

unsigned int Arguments::number(const std::string& key) const
{
    return Numbers::unsigned_of(text(key)).value();
}

double Arguments::real(const std::string& key) const
{
    return Numbers::general_of(text(key)).value();
}

std::optional<std::string> find_value(const std::vector<std::string>& words, const std::string& key)
{
    for (const std::string& word : words)
        if (word.starts_with(key))
            return word.substr(key.size());
    return std::nullopt;
}

} // namespace Standins
