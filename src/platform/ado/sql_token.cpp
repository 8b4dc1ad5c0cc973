#include "platform/ado/sql_token.h"

#include <algorithm>
#include <array>

namespace quillan::ado {
namespace {

// Every statement that is run passes through here, character by character. Unlike functions, these
// are compiled into the loop that calls them.
constexpr auto kIsBlank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };

constexpr std::array<bool, 256> kWordCharacters = [] {
  std::array<bool, 256> word{};
  for (size_t c = 0; c < word.size(); ++c) {
    word[c] = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
              c == '_' || c == '@' || c == '#' || c == '$' || c >= 0x80;
  }
  return word;
}();

constexpr auto kIsWord = [](char c) { return kWordCharacters[static_cast<unsigned char>(c)]; };

template <typename Predicate>
size_t EndOfRun(std::string_view text, size_t at, Predicate belongs) {
  return static_cast<size_t>(
      std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), belongs) -
      text.begin());
}

// One past the closing quote; a doubled closing quote is part of the text.
size_t EndOfQuoted(std::string_view text, size_t at, char close) {
  for (size_t i = at + 1; i < text.size(); ++i) {
    if (text[i] != close) continue;
    if (i + 1 == text.size() || text[i + 1] != close) return i + 1;
    ++i;
  }
  return text.size();
}

size_t EndAfter(std::string_view text, size_t at, std::string_view mark) {
  const size_t found = text.find(mark, at);
  return found == std::string_view::npos ? text.size() : found + mark.size();
}

}  // namespace

SqlToken SqlTokenAt(std::string_view statement, size_t at) {
  const auto token = [&](SqlTokenKind kind, size_t end) {
    return SqlToken{kind, std::string_view(statement.data() + at, end - at)};
  };
  const char c = statement[at];
  if (kIsWord(c)) return token(SqlTokenKind::kWord, EndOfRun(statement, at, kIsWord));
  if (kIsBlank(c)) return token(SqlTokenKind::kBlank, EndOfRun(statement, at, kIsBlank));
  const char next = at + 1 < statement.size() ? statement[at + 1] : '\0';
  switch (c) {
    case '\'':
      return token(SqlTokenKind::kLiteral, EndOfQuoted(statement, at, '\''));
    case '[':
      return token(SqlTokenKind::kQuotedName, EndOfQuoted(statement, at, ']'));
    case '"':
      return token(SqlTokenKind::kQuotedName, EndOfQuoted(statement, at, '"'));
    case '-':
      if (next == '-') return token(SqlTokenKind::kBlank, EndAfter(statement, at, "\n"));
      break;
    case '/':
      if (next == '*') return token(SqlTokenKind::kBlank, EndAfter(statement, at + 2, "*/"));
      break;
    default:
      break;
  }
  return token(SqlTokenKind::kSymbol, at + 1);
}

std::vector<SqlToken> SqlTokens(std::string_view statement) {
  std::vector<SqlToken> tokens;
  for (size_t at = 0; at < statement.size(); at += tokens.back().text.size()) {
    tokens.push_back(SqlTokenAt(statement, at));
  }
  return tokens;
}

}  // namespace quillan::ado
