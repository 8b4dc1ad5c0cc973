#include "platform/ado/odbc_statement.h"

#include <algorithm>
#include <array>
#include <vector>

#include "platform/text/encoding.h"

namespace quillan::ado {
namespace {

// Texts up to this many characters are sent as nvarchar(n), longer ones as nvarchar(max).
constexpr size_t kMostBoundedCharacters = 4000;

SQLCHAR* Bytes(std::string& text) { return reinterpret_cast<SQLCHAR*>(text.data()); }

SQLWCHAR* Units(std::u16string& text) { return reinterpret_cast<SQLWCHAR*>(text.data()); }

// One parameter in the form in which it is handed to the driver, which reads it when the statement
// runs.
struct Parameter {
  SQLSMALLINT c_type = SQL_C_WCHAR;
  SQLSMALLINT sql_type = SQL_WVARCHAR;
  SQLULEN size = 1;
  std::int64_t whole = 0;
  double real = 0;
  std::string bytes;
  std::u16string units;
  SQLPOINTER data = nullptr;
  SQLLEN length = SQL_NULL_DATA;
};

void Fill(const Value& value, OdbcText encoding, Parameter& parameter) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    parameter.c_type = SQL_C_SBIGINT;
    parameter.sql_type = SQL_BIGINT;
    parameter.whole = *whole;
    parameter.data = &parameter.whole;
    parameter.length = sizeof parameter.whole;
  } else if (const auto* real = std::get_if<double>(&value)) {
    parameter.c_type = SQL_C_DOUBLE;
    parameter.sql_type = SQL_DOUBLE;
    parameter.real = *real;
    parameter.data = &parameter.real;
    parameter.length = sizeof parameter.real;
  } else if (const auto* text = std::get_if<std::string_view>(&value)) {
    size_t characters = 0;
    if (encoding == OdbcText::kUtf8) {
      parameter.bytes = *text;
      parameter.data = parameter.bytes.data();
      characters = parameter.bytes.size();
      parameter.length = static_cast<SQLLEN>(characters);
      parameter.c_type = SQL_C_CHAR;
      parameter.sql_type = SQL_VARCHAR;
    } else {
      parameter.units = text::Utf8ToUtf16(*text);
      parameter.data = parameter.units.data();
      characters = parameter.units.size();
      parameter.length = static_cast<SQLLEN>(characters * sizeof(char16_t));
      if (characters > kMostBoundedCharacters) parameter.sql_type = SQL_WLONGVARCHAR;
    }
    parameter.size = std::max(characters, size_t{1});
  }
}

}  // namespace

OdbcStatement::OdbcStatement(const OdbcSession& session, int timeout)
    : session_(session), handle_(SQL_HANDLE_STMT, &session.connection()) {
  // Optional in a driver, so a refusal is none of the statement's.
  SQLSetStmtAttr(handle(), SQL_ATTR_QUERY_TIMEOUT, AttributeValue(static_cast<SQLULEN>(timeout)),
                 0);
  // Braces in a statement are the server's, not ODBC escapes.
  SQLSetStmtAttr(handle(), SQL_ATTR_NOSCAN, AttributeValue(SQL_NOSCAN_ON), 0);
}

SQLRETURN OdbcStatement::Run(std::string_view statement) {
  SQLFreeStmt(handle(), SQL_CLOSE);
  if (session_.text() == OdbcText::kUtf8) {
    std::string text(statement);
    return SQLExecDirect(handle(), Bytes(text), static_cast<SQLINTEGER>(text.size()));
  }
  std::u16string text = text::Utf8ToUtf16(statement);
  return SQLExecDirectW(handle(), Units(text), static_cast<SQLINTEGER>(text.size()));
}

void OdbcStatement::Execute(std::string_view statement) { Check(Run(statement)); }

void OdbcStatement::Execute(std::string_view statement, std::span<const Value> parameters) {
  std::vector<Parameter> bound(parameters.size());
  for (size_t i = 0; i < bound.size(); ++i) {
    Parameter& parameter = bound[i];
    Fill(parameters[i], session_.text(), parameter);
    Check(SQLBindParameter(handle(), static_cast<SQLUSMALLINT>(i + 1), SQL_PARAM_INPUT,
                           parameter.c_type, parameter.sql_type, parameter.size, 0, parameter.data,
                           parameter.length, &parameter.length));
  }
  const SQLRETURN result = Run(statement);
  Check(result);
  SQLFreeStmt(handle(), SQL_RESET_PARAMS);
}

void OdbcStatement::PrimaryKeys(std::string_view catalog, std::string_view schema,
                                std::string_view table) {
  SQLFreeStmt(handle(), SQL_CLOSE);
  const auto size = [](const auto& text) { return static_cast<SQLSMALLINT>(text.size()); };
  if (session_.text() == OdbcText::kUtf8) {
    std::string names[] = {std::string(catalog), std::string(schema), std::string(table)};
    const auto bytes = [](std::string& name) { return name.empty() ? nullptr : Bytes(name); };
    Check(SQLPrimaryKeys(handle(), bytes(names[0]), size(names[0]), bytes(names[1]), size(names[1]),
                         bytes(names[2]), size(names[2])));
  } else {
    std::u16string names[] = {text::Utf8ToUtf16(catalog), text::Utf8ToUtf16(schema),
                              text::Utf8ToUtf16(table)};
    const auto units = [](std::u16string& name) { return name.empty() ? nullptr : Units(name); };
    Check(SQLPrimaryKeysW(handle(), units(names[0]), size(names[0]), units(names[1]),
                          size(names[1]), units(names[2]), size(names[2])));
  }
}

SQLSMALLINT OdbcStatement::ColumnCount() const {
  SQLSMALLINT count = 0;
  Check(SQLNumResultCols(handle(), &count));
  return count;
}

OdbcColumn OdbcStatement::Column(SQLSMALLINT number) const {
  OdbcColumn column;
  SQLSMALLINT length = 0;
  SQLSMALLINT nullable = 0;
  const auto position = static_cast<SQLUSMALLINT>(number);
  if (session_.text() == OdbcText::kUtf8) {
    std::array<SQLCHAR, 1024> name{};
    Check(SQLDescribeCol(handle(), position, name.data(), name.size(), &length, &column.type,
                         &column.size, &column.scale, &nullable));
    column.name = reinterpret_cast<const char*>(name.data());
  } else {
    std::array<char16_t, 512> name{};
    Check(SQLDescribeColW(handle(), position, reinterpret_cast<SQLWCHAR*>(name.data()), name.size(),
                          &length, &column.type, &column.size, &column.scale, &nullable));
    column.name = text::Utf16ToUtf8(name.data());
  }
  return column;
}

SQLLEN OdbcStatement::RowCount() const {
  SQLLEN count = 0;
  Check(SQLRowCount(handle(), &count));
  return count;
}

bool OdbcStatement::NextResult() {
  const SQLRETURN result = SQLMoreResults(handle());
  Check(result);
  return result != SQL_NO_DATA;
}

}  // namespace quillan::ado
