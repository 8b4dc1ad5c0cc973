#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace quillan {

/// The kinds of scheme that the routines tell apart. Source: INTERNET_SCHEME of the Windows
/// Internet functions.
enum class UrlScheme : int {
  kPartial = -2,  ///< The address has no scheme.
  kUnknown = -1,
  kFtp = 1,
  kGopher = 2,
  kHttp = 3,
  kHttps = 4,
  kFile = 5,
  kNews = 6,
  kMailto = 7,
};

/// The parts of a web address, escape sequences as they stand in it.
struct UrlParts {
  std::string scheme_name;  ///< In small letters, without the colon; empty without a scheme.
  UrlScheme scheme = UrlScheme::kPartial;
  /// Whether "//" introduces a host, which may be empty; `CreateUrl` also writes the "//" wherever
  /// a host, user, password or port needs it.
  bool has_authority = false;
  std::string user_name;
  std::string password;
  std::string host_name;   ///< An IPv6 address in its square brackets.
  int port = 0;            ///< Where the address names none: the scheme's own, or 0.
  std::string path;        ///< With its leading "/", if there is one.
  std::string extra_info;  ///< Query and fragment, with the leading "?" or "#".
};

/// How a routine ended.
struct UrlStatus {
  std::int32_t error = 0;  ///< 0, or one of the errors below.
  std::string text;        ///< What was wrong; empty on success.

  bool Ok() const { return error == 0; }
};

// Source: the error codes of Windows and of its Internet functions.
inline constexpr std::int32_t kUrlBufferTooSmall = 122;
inline constexpr std::int32_t kUrlInvalid = 12005;

/// The longest part, in bytes.
inline constexpr size_t kUrlPartLimit = 1024;

/// Brings `address` (UTF-8, read up to its first NUL) into the form that `CrackUrl` takes: no
/// blanks and line ends around it, the scheme in small letters, and up to the first "?" or "#" each
/// unsafe character (blanks, controls, `"<>\^{|}` and the backquote, characters outside ASCII but
/// not in the host) as a percent escape; what follows stays as it is. Nothing is decoded, and a
/// percent sign is never escaped. Fails with `kUrlInvalid` when nothing is left.
UrlStatus CanonicalizeUrl(std::string_view address, std::string& canonical);

/// Splits a canonical address. An address without a scheme is a path unless "//" introduces a host.
/// Fails with `kUrlInvalid` on a port that is no number of at most 65535 and on a "[" that is not
/// closed, with `kUrlBufferTooSmall` on a part beyond `kUrlPartLimit`; `parts` then stay unchanged.
UrlStatus CrackUrl(std::string_view canonical, UrlParts& parts);

/// Puts an address together and writes it to `buffer` with a NUL behind it. Unsafe characters, and
/// those that would end their part early, become percent escapes; the scheme's own port, port 0 and
/// an empty user name and password leave no mark. When `buffer` is too small, fails with
/// `kUrlBufferTooSmall` and writes nothing. Fails with `kUrlInvalid` on a port outside 0..65535, on
/// a part other than the extra information beyond `kUrlPartLimit`, and when all parts are empty.
/// `length`: on success the bytes written without the NUL; when too small the bytes needed with it.
UrlStatus CreateUrl(const UrlParts& parts, std::span<char> buffer, size_t& length);

}  // namespace quillan
