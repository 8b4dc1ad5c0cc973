#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillan {

/// The parts of a web address; escape sequences are not decoded.
struct UrlParts {
  std::string scheme_name;  ///< In lower case, without the colon; empty without a scheme.
  /// Whether "//" introduces a host, which may be empty; `CreateUrl` also writes the "//" wherever
  /// a host, user, password or port needs it.
  bool has_authority = false;
  std::string user_name;
  std::string password;
  std::string host_name;   ///< An IPv6 address in its square brackets.
  int port = 0;            ///< If the address has none: the scheme's own, or 0.
  std::string path;        ///< With its leading "/", if it has one.
  std::string extra_info;  ///< Query and fragment, with the leading "?" or "#".
};

/// The longest part, in bytes.
inline constexpr size_t kUrlPartLimit = 1024;

// Each routine returns nothing if it fails, and a sentence that says why in `error`.

/// Brings `address` (UTF-8, read up to its first NUL) into the form that `CrackUrl` takes: no
/// blanks and line ends around it, the scheme in lower case, and up to the first "?" or "#" each
/// unsafe character (blanks, control characters, `"<>\^{|}` and the backquote, characters outside
/// ASCII but not in the host) as a percent escape; the rest stays as it is. Nothing is decoded, and
/// a percent sign is never escaped. Fails if nothing is left.
std::optional<std::string> CanonicalizeUrl(std::string_view address, std::string& error);

/// Splits a canonical address. An address without a scheme is a path unless "//" introduces a host.
/// Fails on a port that is not a number from 0 to 65535, on a "[" that is not closed and on a part
/// longer than `kUrlPartLimit`.
std::optional<UrlParts> CrackUrl(std::string_view canonical, std::string& error);

/// `text` with the percent escapes that `CreateUrl` writes in a query.
std::string EscapeUnsafe(std::string_view text);

/// Builds an address that `CrackUrl` takes apart again. Unsafe characters, and those that would end
/// their part early, become percent escapes: in a host also colons and brackets, unless it is an
/// IPv6 address, which is put in brackets where it has none. The scheme's own port, port 0 and an
/// empty user name and password are left out. Fails on a port outside 0..65535, on a part other
/// than the extra information that is longer than `kUrlPartLimit`, and if all parts are empty.
std::optional<std::string> CreateUrl(const UrlParts& parts, std::string& error);

}  // namespace quillan
