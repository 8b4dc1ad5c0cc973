#include "platform/ado/odbc_error.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/error.h"
#include "platform/text/encoding.h"

namespace quillan::ado {
namespace {

struct Diagnostic {
  std::string state;
  SQLINTEGER number = 0;
  std::string text;

  bool IsMessage() const { return state.starts_with("01"); }
};

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

// Reads record `record` (from 1); false when there is none.
bool ReadDiagnostic(const OdbcHandle& handle, SQLSMALLINT record, OdbcText encoding,
                    Diagnostic& diagnostic) {
  constexpr SQLSMALLINT kMostUnits = 8192;
  SQLSMALLINT length = 0;
  std::string text;
  if (encoding == OdbcText::kUtf16) {
    std::array<SQLWCHAR, SQL_SQLSTATE_SIZE + 1> state{};
    std::u16string units(kMostUnits, u'\0');
    if (!SQL_SUCCEEDED(SQLGetDiagRecW(handle.type(), handle.get(), record, state.data(),
                                      &diagnostic.number, reinterpret_cast<SQLWCHAR*>(units.data()),
                                      kMostUnits, &length))) {
      return false;
    }
    diagnostic.state.assign(state.begin(), state.begin() + SQL_SQLSTATE_SIZE);
    text = text::Utf16ToUtf8(std::u16string_view(units.c_str()));
  } else {
    std::array<SQLCHAR, SQL_SQLSTATE_SIZE + 1> state{};
    std::string bytes(kMostUnits, '\0');
    if (!SQL_SUCCEEDED(SQLGetDiagRec(handle.type(), handle.get(), record, state.data(),
                                     &diagnostic.number, reinterpret_cast<SQLCHAR*>(bytes.data()),
                                     kMostUnits, &length))) {
      return false;
    }
    diagnostic.state.assign(state.begin(), state.begin() + SQL_SQLSTATE_SIZE);
    text = bytes.substr(0, bytes.find('\0'));
  }
  diagnostic.text = WithoutComponents(text);
  return true;
}

std::vector<Diagnostic> ReadDiagnostics(const OdbcHandle& handle, OdbcText encoding) {
  std::vector<Diagnostic> diagnostics;
  Diagnostic diagnostic;
  for (SQLSMALLINT record = 1; ReadDiagnostic(handle, record, encoding, diagnostic); ++record) {
    diagnostics.push_back(diagnostic);
  }
  // Errors first, in their order. Some drivers report an error as a message, but then alone.
  std::stable_partition(diagnostics.begin(), diagnostics.end(),
                        [](const Diagnostic& d) { return !d.IsMessage(); });
  return diagnostics;
}

}  // namespace

void ThrowOdbcError(const OdbcHandle& handle, OdbcText encoding) {
  const std::vector<Diagnostic> diagnostics = ReadDiagnostics(handle, encoding);
  if (diagnostics.empty()) throw Error(0, "", "The ODBC driver failed without saying why.");
  const Diagnostic& first = diagnostics.front();
  if (first.state == "HYT00" || first.state == "HYT01") {
    throw Error(kTimeoutExpired, first.state, first.text);
  }
  std::string text = first.text;
  // A connection's failure may name its cause in a message besides.
  if (handle.type() == SQL_HANDLE_DBC && first.number == 0) {
    for (size_t i = 1; i < diagnostics.size(); ++i) text += ": " + diagnostics[i].text;
  }
  throw Error(first.number, first.state, text);
}

}  // namespace quillan::ado
