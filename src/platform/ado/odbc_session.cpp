#include "platform/ado/odbc_session.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/ado/error.h"
#include "platform/text/ascii.h"

namespace quillan::ado {
namespace {

OdbcHandle NewEnvironment() {
  OdbcHandle environment(SQL_HANDLE_ENV);
  SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION, AttributeValue(SQL_OV_ODBC3), 0);
  // A session that is opened again must be a fresh one. Allocating an environment resets this.
  SQLSetEnvAttr(SQL_NULL_HANDLE, SQL_ATTR_CONNECTION_POOLING, AttributeValue(SQL_CP_OFF), 0);
  return environment;
}

std::string Join(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list.empty() ? "none" : list;
}

// Whether `driver` is a name, not a file, that stands for no installed driver.
bool IsMissing(const std::string& driver, const std::vector<std::string>& installed) {
  return !driver.empty() && driver.find('/') == std::string::npos &&
         std::none_of(installed.begin(), installed.end(), [&](const std::string& name) {
           return text::EqualsIgnoringCase(name, driver);
         });
}

// Drops "[vendor][driver][server]" at the start, but no bracketed name of the server's own text.
std::string_view WithoutComponents(std::string_view text) {
  constexpr std::array<std::string_view, 6> kComponents = {
      "[unixODBC]", "[Driver Manager]", "[Microsoft]", "[FreeTDS]", "[SQL Server]", "[SQLite]"};
  for (;;) {
    size_t length = 0;
    for (const std::string_view component : kComponents) {
      if (text.starts_with(component)) length = component.size();
    }
    if (text.starts_with("[ODBC Driver ")) length = text.find(']') + 1;
    if (length == 0) return text;
    text.remove_prefix(length);
  }
}

// What the driver reported, errors before messages. Some drivers report an error as a message, but
// then alone.
std::vector<OdbcDiagnostic> Diagnostics(const OdbcApi& api, const OdbcHandle& handle) {
  std::vector<OdbcDiagnostic> diagnostics;
  for (SQLSMALLINT number = 1; auto diagnostic = api.GetDiagRec(handle, number); ++number) {
    diagnostic->text = WithoutComponents(diagnostic->text);
    diagnostics.push_back(std::move(*diagnostic));
  }
  std::stable_partition(diagnostics.begin(), diagnostics.end(),
                        [](const OdbcDiagnostic& d) { return !d.state.starts_with("01"); });
  return diagnostics;
}

}  // namespace

OdbcSession::OdbcSession(const std::string& connection_string, const std::string& driver,
                         int login_timeout)
    : environment_(NewEnvironment()),
      connection_(SQL_HANDLE_DBC, &environment_),
      api_(&OdbcApi::For(driver)) {
  SetAttribute(SQL_ATTR_LOGIN_TIMEOUT, static_cast<SQLULEN>(login_timeout));
  Connect(connection_string, driver);
  connected_ = true;
  // A data source does not say which driver it uses, but its database does.
  api_ = &OdbcApi::For(Info(SQL_DBMS_NAME));
}

OdbcSession::~OdbcSession() {
  if (SQL_SUCCEEDED(SQLDisconnect(connection_.get()))) return;
  // An open transaction keeps a session from ending.
  SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK);
  SQLDisconnect(connection_.get());
}

void OdbcSession::Connect(const std::string& connection_string, const std::string& driver) {
  try {
    Check(api_->DriverConnect(connection_.get(), connection_string), connection_);
  } catch (const Error& error) {
    const std::vector<std::string> installed = InstalledOdbcDrivers();
    if (!IsMissing(driver, installed)) throw;
    throw Error(error.number(), error.state(),
                "The ODBC driver \"" + driver +
                    "\" is not installed (installed: " + Join(installed) + "). " + error.what());
  }
}

void OdbcSession::Check(SQLRETURN result, const OdbcHandle& handle) const {
  if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) return;
  const std::vector<OdbcDiagnostic> diagnostics = Diagnostics(*api_, handle);
  const std::string state = diagnostics.empty() ? "" : diagnostics.front().state;
  const bool dead = connected_ && IsDead();
  if (state == "HYT00" || state == "HYT01") {
    // A server that does not even answer the request to stop has lost its session.
    throw Error(kTimeoutExpired, dead ? "08S01" : state, diagnostics.front().text);
  }
  if (dead) {
    throw Error(0, "08S01", "The connection to the server was lost.");
  }
  if (diagnostics.empty()) throw Error(0, "", "The ODBC driver failed without saying why.");
  if (state == kCancelled) throw Error(0, state, "The statement was cancelled.");
  std::string text = diagnostics.front().text;
  // A connection's failure may name its cause in a message besides.
  if (handle.type() == SQL_HANDLE_DBC && diagnostics.front().number == 0) {
    for (size_t i = 1; i < diagnostics.size(); ++i) text += ": " + diagnostics[i].text;
  }
  throw Error(diagnostics.front().number, state, text);
}

// Drivers answer from what their last call saw, so this is right after a failure only. FreeTDS has
// no other sign: it reports a lost connection as HY000.
bool OdbcSession::IsDead() const {
  SQLUINTEGER dead = SQL_CD_FALSE;
  return SQL_SUCCEEDED(SQLGetConnectAttr(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &dead,
                                         sizeof dead, nullptr)) &&
         dead == SQL_CD_TRUE;
}

void OdbcSession::SetAttribute(SQLINTEGER attribute, SQLULEN value) {
  Check(SQLSetConnectAttr(connection_.get(), attribute, AttributeValue(value), 0), connection_);
}

void OdbcSession::EndTransaction(SQLSMALLINT completion) {
  Check(SQLEndTran(SQL_HANDLE_DBC, connection_.get(), completion), connection_);
}

std::vector<std::string> InstalledOdbcDrivers() {
  const OdbcHandle environment = NewEnvironment();
  std::vector<std::string> names;
  std::array<SQLCHAR, 256> name{};
  SQLSMALLINT length = 0;
  for (SQLUSMALLINT direction = SQL_FETCH_FIRST; SQL_SUCCEEDED(SQLDrivers(
           environment.get(), direction, name.data(), name.size(), &length, nullptr, 0, nullptr));
       direction = SQL_FETCH_NEXT) {
    names.emplace_back(reinterpret_cast<const char*>(name.data()));
  }
  return names;
}

}  // namespace quillan::ado
