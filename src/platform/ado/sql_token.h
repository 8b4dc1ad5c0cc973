#pragma once

#include <string_view>
#include <vector>

namespace quillan::ado {

enum class SqlTokenKind {
  kWord,        // A keyword, name or number.
  kQuotedName,  // [name] or "name".
  kLiteral,     // '…', quotes doubled inside.
  kBlank,       // Blanks and comments.
  kSymbol,      // Any other single character.
};

struct SqlToken {
  SqlTokenKind kind;
  std::string_view text;
};

/// The token that starts at `at` (< statement.size()); an unterminated literal, name or comment
/// reaches to the end. N'…' is the word N and a literal.
SqlToken SqlTokenAt(std::string_view statement, size_t at);

/// All tokens of `statement`; joined they give the statement again.
std::vector<SqlToken> SqlTokens(std::string_view statement);

}  // namespace quillan::ado
