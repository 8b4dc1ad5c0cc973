#include "platform/ado/odbc_session.h"

#include <algorithm>
#include <array>

#include "platform/ado/error.h"
#include "platform/text/ascii.h"
#include "platform/text/encoding.h"

namespace quillan::ado {
namespace {

OdbcHandle NewEnvironment() {
  OdbcHandle environment(SQL_HANDLE_ENV);
  CheckOdbc(
      SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION, AttributeValue(SQL_OV_ODBC3), 0),
      environment, OdbcText::kUtf16);
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

}  // namespace

OdbcSession::OdbcSession(const std::string& connection_string, const std::string& driver,
                         int login_timeout)
    : environment_(NewEnvironment()), connection_(SQL_HANDLE_DBC, &environment_) {
  SetAttribute(SQL_ATTR_LOGIN_TIMEOUT, static_cast<SQLULEN>(login_timeout));
  Connect(connection_string, driver);
  sqlite_ = Info(SQL_DBMS_NAME) == "SQLite";
}

OdbcSession::~OdbcSession() {
  if (SQL_SUCCEEDED(SQLDisconnect(connection_.get()))) return;
  // An open transaction keeps a session from ending.
  SQLEndTran(SQL_HANDLE_DBC, connection_.get(), SQL_ROLLBACK);
  SQLDisconnect(connection_.get());
}

void OdbcSession::Connect(const std::string& connection_string, const std::string& driver) {
  // The product's name is not known yet, but only this driver has no Unicode functions.
  const bool bytes = text::ToUpperAscii(driver).find("SQLITE") != std::string::npos;
  SQLRETURN result = SQL_ERROR;
  if (bytes) {
    std::string text = connection_string;
    result = SQLDriverConnect(connection_.get(), nullptr, reinterpret_cast<SQLCHAR*>(text.data()),
                              static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr,
                              SQL_DRIVER_NOPROMPT);
  } else {
    std::u16string text = text::Utf8ToUtf16(connection_string);
    result = SQLDriverConnectW(connection_.get(), nullptr, reinterpret_cast<SQLWCHAR*>(text.data()),
                               static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr,
                               SQL_DRIVER_NOPROMPT);
  }
  try {
    CheckOdbc(result, connection_, bytes ? OdbcText::kUtf8 : OdbcText::kUtf16);
  } catch (const Error& error) {
    const std::vector<std::string> installed = InstalledOdbcDrivers();
    if (!IsMissing(driver, installed)) throw;
    throw Error(error.number(), error.state(),
                "The ODBC driver \"" + driver +
                    "\" is not installed (installed: " + Join(installed) + "). " + error.what());
  }
}

std::string OdbcSession::Info(SQLUSMALLINT type) const {
  std::array<char16_t, 512> units{};
  SQLSMALLINT bytes = 0;
  if (text() == OdbcText::kUtf8) {
    if (!SQL_SUCCEEDED(
            SQLGetInfo(connection_.get(), type, units.data(), sizeof units - 1, &bytes))) {
      return {};
    }
    return reinterpret_cast<const char*>(units.data());
  }
  if (!SQL_SUCCEEDED(
          SQLGetInfoW(connection_.get(), type, units.data(), sizeof units - 2, &bytes))) {
    return {};
  }
  return text::Utf16ToUtf8(units.data());
}

void OdbcSession::SetAttribute(SQLINTEGER attribute, SQLULEN value) {
  CheckOdbc(SQLSetConnectAttr(connection_.get(), attribute, AttributeValue(value), 0), connection_,
            text());
}

void OdbcSession::EndTransaction(SQLSMALLINT completion) {
  CheckOdbc(SQLEndTran(SQL_HANDLE_DBC, connection_.get(), completion), connection_, text());
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
