#include "platform/ado/odbc_statement.h"

#include <algorithm>
#include <vector>

#include "platform/ado/driver.h"

namespace quillan::ado {
namespace {

// Texts up to this many characters are sent as nvarchar(n), longer ones as nvarchar(max).
constexpr size_t kMostBoundedCharacters = 4000;

// One parameter in the form in which it is handed to the driver, which reads it when the statement
// runs.
struct Parameter {
  SQLSMALLINT c_type = SQL_C_CHAR;
  SQLSMALLINT sql_type = SQL_VARCHAR;
  SQLULEN size = 1;
  std::int64_t whole = 0;
  double real = 0;
  std::string text;
  SQLPOINTER data = nullptr;
  SQLLEN length = SQL_NULL_DATA;
};

void Fill(const Value& value, const OdbcApi& api, Parameter& parameter) {
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
    parameter.text = api.TextParameter(*text);
    parameter.data = parameter.text.data();
    parameter.length = static_cast<SQLLEN>(parameter.text.size());
    parameter.c_type = api.TextType();
    size_t characters = parameter.text.size();
    if (parameter.c_type == SQL_C_WCHAR) {
      characters /= sizeof(SQLWCHAR);
      parameter.sql_type = characters > kMostBoundedCharacters ? SQL_WLONGVARCHAR : SQL_WVARCHAR;
    }
    parameter.size = std::max(characters, size_t{1});
  }
}

}  // namespace

OdbcStatement::OdbcStatement(const OdbcSession& session, int timeout)
    : session_(session), handle_(SQL_HANDLE_STMT, &session.connection()) {
  // A driver need not support either attribute.
  SQLSetStmtAttr(handle(), SQL_ATTR_QUERY_TIMEOUT, AttributeValue(static_cast<SQLULEN>(timeout)),
                 0);
  // Braces in a statement are the server's, not ODBC escapes.
  SQLSetStmtAttr(handle(), SQL_ATTR_NOSCAN, AttributeValue(SQL_NOSCAN_ON), 0);
}

void OdbcStatement::Execute(std::string_view statement) {
  RefuseNul(statement);
  Close();
  Check(session_.api().ExecDirect(handle(), statement));
}

void OdbcStatement::Execute(std::string_view statement, std::span<const Value> parameters) {
  std::vector<Parameter> bound(parameters.size());
  for (size_t i = 0; i < bound.size(); ++i) {
    Parameter& parameter = bound[i];
    Fill(parameters[i], session_.api(), parameter);
    Check(SQLBindParameter(handle(), static_cast<SQLUSMALLINT>(i + 1), SQL_PARAM_INPUT,
                           parameter.c_type, parameter.sql_type, parameter.size, 0, parameter.data,
                           parameter.length, &parameter.length));
  }
  Execute(statement);
  SQLFreeStmt(handle(), SQL_RESET_PARAMS);
}

void OdbcStatement::PrimaryKeys(std::string_view catalog, std::string_view schema,
                                std::string_view table) {
  Close();
  Check(session_.api().PrimaryKeys(handle(), catalog, schema, table));
}

SQLSMALLINT OdbcStatement::ColumnCount() const {
  SQLSMALLINT count = 0;
  Check(SQLNumResultCols(handle(), &count));
  return count;
}

OdbcColumn OdbcStatement::Column(SQLSMALLINT number) const {
  OdbcColumn column;
  Check(session_.api().DescribeCol(handle(), static_cast<SQLUSMALLINT>(number), column));
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
