#include "platform/ado/sqlite_dialect.h"

#include <algorithm>
#include <optional>

#include "platform/ado/sql_token.h"
#include "platform/text/ascii.h"

namespace quillan::ado {
namespace {

// 1 for an opening parenthesis, -1 for a closing one, else 0.
int NestingChange(const SqlToken& token) {
  if (token.kind != SqlTokenKind::kSymbol) return 0;
  const char symbol = token.text.front();
  return (symbol == '(' ? 1 : 0) - (symbol == ')' ? 1 : 0);
}

// Walks the tokens of a statement; blanks are passed over unless they are asked for.
class Reader {
 public:
  explicit Reader(std::string_view statement, size_t at = 0) : text_(statement), at_(at) {}

  bool AtEnd() const { return !Reader(*this).Next(); }
  size_t position() const { return at_; }

  std::optional<SqlToken> Next() {
    while (at_ < text_.size()) {
      const SqlToken token = SqlTokenAt(text_, at_);
      at_ += token.text.size();
      if (token.kind != SqlTokenKind::kBlank) return token;
    }
    return std::nullopt;
  }

  // Takes the next token if it is `text`, a word or a symbol.
  bool Take(std::string_view text) {
    Reader ahead = *this;
    const auto token = ahead.Next();
    if (!token || token->kind == SqlTokenKind::kLiteral ||
        !text::EqualsIgnoringCase(token->text, text)) {
      return false;
    }
    *this = ahead;
    return true;
  }

  bool Take(std::initializer_list<std::string_view> words) {
    Reader ahead = *this;
    for (const std::string_view word : words) {
      if (!ahead.Take(word)) return false;
    }
    *this = ahead;
    return true;
  }

  // Takes '…' or N'…' and returns it as '…'.
  std::optional<std::string_view> TakeLiteral() {
    Take("N");
    const auto token = Next();
    if (!token || token->kind != SqlTokenKind::kLiteral) return std::nullopt;
    return token->text;
  }

  // Takes "(…)" with its nested parentheses and returns what stands between.
  std::optional<std::string_view> TakeParenthesised() {
    if (!Take("(")) return std::nullopt;
    const size_t start = at_;
    for (int depth = 1; depth > 0;) {
      const auto token = Next();
      if (!token) return std::nullopt;
      depth += NestingChange(*token);
    }
    return text_.substr(start, at_ - 1 - start);
  }

 private:
  std::string_view text_;
  size_t at_;
};

std::optional<std::string> GlobalSetting(std::string_view statement) {
  Reader reader(statement);
  if (!reader.Take("exec") && !reader.Take("execute")) return std::nullopt;
  if (!reader.Take("tbsp_netflowSetGlobalSetting")) return std::nullopt;
  const auto name = reader.TakeLiteral();
  if (!name || !reader.Take(",")) return std::nullopt;
  const auto value = reader.TakeLiteral();
  if (!value || !reader.AtEnd()) return std::nullopt;
  return "insert into GlobalSettings (Name, Value) values (" + std::string(*name) + ", " +
         std::string(*value) + ") on conflict (Name) do update set Value = excluded.Value";
}

std::optional<std::string> GuardedInsert(std::string_view statement) {
  Reader reader(statement);
  if (!reader.Take({"if", "not", "exists"})) return std::nullopt;
  const auto query = reader.TakeParenthesised();
  if (!query) return std::nullopt;
  const size_t insert = reader.position();
  if (!reader.Take({"insert", "into"}) || !reader.Next() || !reader.TakeParenthesised()) {
    return std::nullopt;
  }
  const std::string_view target =
      text::TrimSpaces(statement.substr(insert, reader.position() - insert));
  if (!reader.Take("values")) return std::nullopt;
  const auto values = reader.TakeParenthesised();
  if (!values || !reader.AtEnd()) return std::nullopt;
  return std::string(target) + " select " + std::string(*values) + " where not exists (" +
         std::string(*query) + ")";
}

std::optional<std::string> IsolationLevel(std::string_view statement) {
  Reader reader(statement);
  if (!reader.Take({"set", "transaction", "isolation", "level"})) return std::nullopt;
  const bool dirty = reader.Take({"read", "uncommitted"});
  if (!dirty && !reader.Take({"read", "committed"})) return std::nullopt;
  if (!reader.AtEnd()) return std::nullopt;
  return dirty ? "pragma read_uncommitted = 1" : "pragma read_uncommitted = 0";
}

// 1 for what is stored as a number and for a text that reads back the same as one, else 0. Unlike
// `and`, `case` calls no function for Null, which most operands are.
std::string IsNumeric(std::string_view operand) {
  const std::string x(operand);
  return "(case when " + x + " is null then 0 when typeof(" + x + ") = 'text' then cast(cast(" + x +
         " as numeric) as text) = trim(" + x + ") else typeof(" + x + ") <> 'blob' end)";
}

bool IsDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// What can stand anywhere in a statement: top, isnumeric, N'…'. What lies between is copied in one
// piece, as most statements hold none of them.
std::string TranslateExpressions(std::string_view statement) {
  std::string result;
  std::string limit;
  result.reserve(statement.size());
  size_t copied = 0;
  const auto replace = [&](size_t first, size_t end, std::string_view text) {
    result.append(statement, copied, first - copied).append(text);
    copied = end;
  };
  bool after_select = false;
  int depth = 0;
  size_t end = 0;  // Of the last token but for semicolons, behind which a limit belongs.
  for (size_t at = 0; at < statement.size();) {
    const SqlToken token = SqlTokenAt(statement, at);
    const size_t start = at;
    at += token.text.size();
    if (token.kind == SqlTokenKind::kBlank || token.text == ";") continue;
    end = at;
    depth += NestingChange(token);
    const bool expects_top = after_select && depth == 0;
    after_select = false;
    if (token.kind != SqlTokenKind::kWord) continue;
    if (text::EqualsIgnoringCase(token.text, "N")) {
      if (at == statement.size() || statement[at] != '\'') continue;
      // Two literals must not become one, in which the quotes between them are a character.
      const bool after_literal = start > 0 && statement[start - 1] == '\'';
      replace(start, at, after_literal ? " " : "");
    } else if (text::EqualsIgnoringCase(token.text, "select")) {
      after_select = true;
    } else if (expects_top && text::EqualsIgnoringCase(token.text, "top")) {
      Reader reader(statement, at);
      if (const auto count = reader.Next(); count && limit.empty() && IsDigits(count->text)) {
        limit = " limit " + std::string(count->text);
        end = at = reader.position();
        replace(start, at, "");
      }
    } else if (text::EqualsIgnoringCase(token.text, "isnumeric")) {
      Reader reader(statement, at);
      if (const auto operand = reader.TakeParenthesised()) {
        end = at = reader.position();
        replace(start, at, IsNumeric(*operand));
      }
    }
  }
  if (limit.empty()) return result.append(statement, copied);
  replace(end, end, limit);
  return result.append(statement, copied);
}

}  // namespace

std::string TranslateToSqlite(std::string_view statement) {
  Reader reader(statement);
  const auto first = reader.Next();
  if (first && first->kind == SqlTokenKind::kWord && !first->text.empty()) {
    std::optional<std::string> whole;
    switch (text::ToUpperAscii(first->text.front())) {
      case 'E':
        whole = GlobalSetting(statement);
        break;
      case 'I':
        whole = GuardedInsert(statement);
        break;
      case 'S':
        whole = IsolationLevel(statement);
        break;
      default:
        break;
    }
    if (whole) return TranslateExpressions(*whole);
  }
  return TranslateExpressions(statement);
}

}  // namespace quillan::ado
