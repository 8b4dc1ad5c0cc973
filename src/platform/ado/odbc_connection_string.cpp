#include "platform/ado/odbc_connection_string.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <initializer_list>

#include "platform/ado/error.h"
#include "platform/text/ascii.h"

namespace quillan::ado {
namespace {

using Keys = std::initializer_list<std::string_view>;

constexpr std::string_view kFreeTds = "FreeTDS";
constexpr int kDefaultPort = 1433;

// Every setting's names: the provider's property as ADO writes it, then the keywords of the
// provider's own strings. Source: the connection-string keyword lists of the OLE DB providers.
const Keys kAddress = {"Network Address", "Address", "Addr"};
const Keys kServer = {"Data Source", "Server"};
const Keys kDatabase = {"Initial Catalog", "Database"};
const Keys kUser = {"User ID", "UID", "User"};
const Keys kPassword = {"Password", "PWD"};
const Keys kIntegrated = {"Integrated Security", "Trusted_Connection"};
const Keys kApplication = {"Application Name", "APP"};
const Keys kWorkstation = {"Workstation ID", "WSID"};
const Keys kEncrypt = {"Use Encryption for Data", "Encrypt"};
const Keys kTrust = {"Trust Server Certificate", "TrustServerCertificate"};
const Keys kLanguage = {"Current Language", "Language"};
const Keys kIntent = {"Application Intent", "ApplicationIntent"};
const Keys kFailover = {"Failover Partner", "Failover_Partner", "FailoverPartner"};
const Keys kMultiSubnet = {"MultiSubnetFailover", "Multi Subnet Failover"};
const Keys kAuthentication = {"Authentication"};

[[noreturn]] void Refuse(const std::string& problem) {
  throw Error(0, "", "The connection string cannot be used: " + problem);
}

bool IsOneOf(std::string_view text, Keys words) {
  return std::any_of(words.begin(), words.end(), [text](std::string_view word) {
    return text::EqualsIgnoringCase(text, word);
  });
}

// Whether a setting is switched on. Any other value is refused, because a
// guess could be the less secure of the two.
bool IsOn(const ConnectionString& settings, Keys keys) {
  const std::string value = settings.Value(keys);
  if (IsOneOf(value, {"true", "yes", "1", "-1", "SSPI", "mandatory", "strict"})) return true;
  if (IsOneOf(value, {"", "false", "no", "0", "optional"})) return false;
  Refuse("the value of \"" + settings.Key(keys) + "\" is neither yes nor no.");
}

// Takes "tcp:host\instance,port" apart.
SqlServerAddress ParseServer(std::string_view name) {
  const size_t colon = name.find(':');
  // A one-letter or address-like prefix is part of an IPv6 address.
  const std::string_view protocol = name.substr(0, colon == std::string_view::npos ? 0 : colon);
  if (IsOneOf(protocol, {"tcp", "lpc"})) {
    name = text::TrimSpaces(name.substr(colon + 1));
  } else if (IsOneOf(protocol, {"np", "via"}) || name.starts_with("\\\\")) {
    Refuse("the server \"" + std::string(name) + "\" is not reached over TCP. Name its host.");
  }
  SqlServerAddress server;
  if (const size_t comma = name.rfind(','); comma != std::string_view::npos) {
    const std::string_view digits = text::TrimSpaces(name.substr(comma + 1));
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), server.port);
    if (error != std::errc() || end != digits.data() + digits.size() || server.port < 1 ||
        server.port > 65535) {
      Refuse("the port \"" + std::string(digits) +
             "\" of the server is not a number from 1 to 65535.");
    }
    name = text::TrimSpaces(name.substr(0, comma));
  }
  if (const size_t slash = name.find('\\'); slash != std::string_view::npos) {
    server.instance = name.substr(slash + 1);
    name = name.substr(0, slash);
    if (IsOneOf(server.instance, {"MSSQLSERVER"})) server.instance.clear();  // The default one.
  }
  server.host = IsOneOf(name, {"", ".", "(local)"}) ? "localhost" : name;
  return server;
}

// Writes "key=value;…" as one driver reads it.
class OdbcStringWriter {
 public:
  explicit OdbcStringWriter(std::string_view driver) : free_tds_(driver == kFreeTds) {
    text_ = "Driver={" + std::string(driver) + "}";
  }

  bool free_tds() const { return free_tds_; }

  void Word(std::string_view key, std::string_view value) {
    text_.append(";").append(key).append("=").append(value);
  }

  // A value that may hold any character.
  void Value(std::string_view key, const std::string& value) {
    if (value.empty()) return;
    // FreeTDS does not support doubled braces: it reads to the brace before a semicolon.
    if (free_tds_ && value.find("};") != std::string::npos) {
      Refuse("the driver FreeTDS does not accept \"};\" in the value of " + std::string(key) +
             ". Change the value, or install the package msodbcsql18.");
    }
    Word(key, "{" + (free_tds_ ? value : text::ReplaceAll(value, "}", "}}")) + "}");
  }

  std::string Take() { return std::move(text_); }

 private:
  bool free_tds_;
  std::string text_;
};

void AddServer(const SqlServerAddress& server, OdbcStringWriter& odbc) {
  if (!odbc.free_tds()) {
    odbc.Value("Server", server.port == 0
                             ? server.host
                             : "tcp:" + server.host + "," + std::to_string(server.port));
    return;
  }
  odbc.Value("Server", server.host);
  odbc.Word("Port", std::to_string(server.port != 0 ? server.port : kDefaultPort));
  // The newest protocol, whose texts are all Unicode, whatever the machine's freetds.conf says.
  odbc.Word("TDS_Version", "7.4");
  odbc.Word("ClientCharset", "UTF-8");
}

void AddEncryption(const ConnectionString& settings, OdbcStringWriter& odbc) {
  const bool encrypt = IsOn(settings, kEncrypt);
  const bool trust = IsOn(settings, kTrust);
  const bool strict = IsOneOf(settings.Value(kEncrypt), {"strict"});
  if (odbc.free_tds()) {
    if (strict || (encrypt && settings.Has(kTrust) && !trust)) {
      Refuse(
          "the driver FreeTDS cannot be told to check the server's certificate. Install the "
          "package msodbcsql18.");
    }
    // Without being asked FreeTDS, too, encrypts the login alone where the server can.
    odbc.Word("Encryption", encrypt ? "require" : "request");
    return;
  }
  odbc.Word("Encrypt", strict ? "strict" : encrypt ? "yes" : "no");
  if (trust) odbc.Word("TrustServerCertificate", "yes");
}

// Only Microsoft's drivers support these keys. FreeTDS would ignore them, and connect to another
// server or as another user.
void AddMicrosoftKeys(const ConnectionString& settings, OdbcStringWriter& odbc) {
  const auto refuse_free_tds = [&](Keys keys, const std::string& instead) {
    if (!odbc.free_tds()) return;
    Refuse("the driver FreeTDS does not support \"" + settings.Key(keys) + "\". " + instead +
           ", or install the package msodbcsql18.");
  };
  if (settings.Has(kMultiSubnet) && IsOn(settings, kMultiSubnet)) {
    refuse_free_tds(kMultiSubnet, "Remove it");
    odbc.Word("MultiSubnetFailover", "Yes");
  }
  if (const std::string partner = settings.Value(kFailover); !partner.empty()) {
    refuse_free_tds(kFailover, "Name the server that is active now");
    odbc.Value("Failover_Partner", partner);
  }
  if (const std::string way = settings.Value(kAuthentication);
      !way.empty() && !IsOneOf(way, {"SqlPassword"})) {
    refuse_free_tds(kAuthentication, "Use a user and a password of the server's own");
    odbc.Value("Authentication", way);
  }
}

}  // namespace

bool IsSqlServerProvider(std::string_view provider) {
  return text::StartsWithIgnoringCase(provider, "SQLOLEDB") ||
         text::StartsWithIgnoringCase(provider, "SQLNCLI") ||
         text::StartsWithIgnoringCase(provider, "MSOLEDBSQL");
}

std::optional<std::string> SqlServerDriver(std::span<const std::string> installed) {
  constexpr std::array<std::string_view, 4> kNewestFirst = {
      "ODBC Driver 18 for SQL Server", "ODBC Driver 17 for SQL Server",
      "ODBC Driver 13 for SQL Server", kFreeTds};
  for (const std::string_view name : kNewestFirst) {
    if (std::find(installed.begin(), installed.end(), name) != installed.end()) {
      return std::string(name);
    }
  }
  return std::nullopt;
}

std::string SqlServerName(const ConnectionString& settings) {
  const std::string address = settings.Value(kAddress);
  return address.empty() ? settings.Value(kServer) : address;
}

SqlServerAddress AddressOf(const ConnectionString& settings) {
  const std::string server = SqlServerName(settings);
  if (server.empty()) Refuse("it names no server. Add \"Data Source=<server>\".");
  return ParseServer(server);
}

bool UsesIntegratedSecurity(const ConnectionString& settings) {
  return IsOn(settings, kIntegrated);
}

bool AsksForEncryption(const ConnectionString& settings) { return IsOn(settings, kEncrypt); }

bool NamesUser(const ConnectionString& settings) { return !settings.Value(kUser).empty(); }

std::string TranslateToOdbc(const ConnectionString& settings, std::string_view driver,
                            const SqlServerAddress& server, const std::string& application) {
  OdbcStringWriter odbc(driver);
  AddServer(server, odbc);
  odbc.Value("Database", settings.Value(kDatabase));
  if (UsesIntegratedSecurity(settings)) {
    odbc.Word("Trusted_Connection", "Yes");
  } else {
    odbc.Value("UID", settings.Value(kUser));
    odbc.Value("PWD", settings.Value(kPassword));
  }
  odbc.Value("APP", settings.Has(kApplication) ? settings.Value(kApplication) : application);
  odbc.Value("WSID", settings.Value(kWorkstation));
  odbc.Value("Language", settings.Value(kLanguage));
  odbc.Value("ApplicationIntent", settings.Value(kIntent));
  AddMicrosoftKeys(settings, odbc);
  AddEncryption(settings, odbc);
  return odbc.Take();
}

}  // namespace quillan::ado
