// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Standins {

/// What may stand behind the key of an argument.
enum class ArgumentKind {
    Flag, ///< nothing: the key is the whole argument
    Text, ///< any text but an empty one
    Directory, ///< text that ends in "/"
    FileName, ///< a name without a directory
    Number, ///< unsigned decimal
    Count, ///< unsigned decimal above 0
    Real, ///< finite number of six significant digits, as cards have it
    Switch, ///< "0" or "1"
};

/// One argument that a program knows. A key with a value ends in "=".
struct ArgumentForm {
    std::string m_strKey;
    ArgumentKind m_kind = ArgumentKind::Flag;
    bool m_bRequired = true;
};

/// The words behind a program's name, each of them known, given once and well formed. Their order
/// is free. Asking for a value that is not there, or by a kind that is not its own, throws.
class Arguments {
public:
    /// Errors: `Refusal`, with the argument in its text.
    Arguments(const std::vector<std::string>& words, const std::vector<ArgumentForm>& forms);

    [[nodiscard]] bool has(const std::string& key) const { return m_mapValues.contains(key); }
    [[nodiscard]] const std::string& text(const std::string& key) const;
    [[nodiscard]] unsigned int number(const std::string& key) const;
    [[nodiscard]] double real(const std::string& key) const;

private:
    std::map<std::string, std::string> m_mapValues;
};

/// The value of the first word that begins with the key, before anything is known of the others.
[[nodiscard]] std::optional<std::string> find_value(
    const std::vector<std::string>& words, const std::string& key);

} // namespace Standins
