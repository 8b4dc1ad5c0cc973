// Connection strings: values survive quoting, and the translation to ODBC neither changes a
// password nor lets one value become another setting.

#include <optional>

#include "fuzz/fuzz.h"
#include "platform/ado/connection_string.h"
#include "platform/ado/error.h"
#include "platform/ado/odbc_connection_string.h"
#include "platform/text/ascii.h"

namespace quillan::ado {
namespace {

std::string Quoted(std::string_view value) {
  return "\"" + text::ReplaceAll(std::string(value), "\"", "\"\"") + "\"";
}

// The value of a key in an ODBC string as the driver manager's documentation describes it: a value
// in braces ends at the first single closing brace.
std::optional<std::string> OdbcValue(std::string_view text, std::string_view wanted) {
  while (!text.empty()) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) return std::nullopt;
    const std::string_view key = text.substr(0, equals);
    text.remove_prefix(equals + 1);
    std::string value;
    if (text.starts_with('{')) {
      std::size_t at = 1;
      while (at < text.size() && (text[at] != '}' || text.substr(at).starts_with("}}"))) {
        value += text[at];
        at += text[at] == '}' ? 2 : 1;
      }
      text.remove_prefix(std::min(at + 1, text.size()));
    } else {
      value = text.substr(0, text.find(';'));
      text.remove_prefix(value.size());
    }
    fuzz::Expect(text.empty() || text.front() == ';', "a value ends at its brace or semicolon");
    if (!text.empty()) text.remove_prefix(1);
    if (key == wanted) return value;
  }
  return std::nullopt;
}

void CheckAnyText(std::string_view text) {
  try {
    const ConnectionString settings(text);
    (void)SqlServerName(settings);
    (void)TranslateToOdbc(settings, "FreeTDS", AddressOf(settings), "");
  } catch (const Error& error) {
    fuzz::Expect(*error.what() != 0, "a refusal says why");
  }
}

void CheckValues(std::string_view server, std::string_view user, std::string_view password) {
  const std::string text = "Provider=SQLOLEDB;Data Source=" + Quoted(server) +
                           ";User ID=" + Quoted(user) + ";Password=" + Quoted(password);
  const ConnectionString settings(text);
  fuzz::ExpectSame(settings.Value({"Data Source"}), server, "the server");
  fuzz::ExpectSame(settings.Value({"user id"}), user, "the user");
  fuzz::ExpectSame(settings.Value({"PWD", "Password"}), password, "the password");
  std::string odbc;
  try {
    odbc = TranslateToOdbc(settings, "ODBC Driver 18 for SQL Server", AddressOf(settings), "");
  } catch (const Error& error) {
    // Words of the message itself have no "#"; it may show the server, in quotes.
    const std::string shown = "\"" + std::string(server) + "\"";
    fuzz::Expect(password.find('#') == std::string_view::npos ||
                     shown.find(password) != std::string::npos ||
                     std::string_view(error.what()).find(password) == std::string::npos,
                 "a refusal shows no password");
    return;
  }
  if (user.empty() && password.empty()) return;
  fuzz::ExpectSame(OdbcValue(odbc, "UID").value_or(""), user, "the user for the driver");
  fuzz::ExpectSame(OdbcValue(odbc, "PWD").value_or(""), password, "the password for the driver");
}

}  // namespace
}  // namespace quillan::ado

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillan::fuzz::Input input(data, size);
  quillan::ado::CheckAnyText(input.Rest());
  const std::string_view server = input.Piece();
  const std::string_view user = input.Piece();
  quillan::ado::CheckValues(server, user, input.Rest());
  return 0;
}
