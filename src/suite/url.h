#pragma once

#include <string>
#include <string_view>

#include "suite/dictionary.h"
#include "suite/url_routines.h"

namespace quillan {

/// A web address that is split into its parts, changed part by part, and put together again.
///
/// Strings are UTF-8. Escape sequences are not decoded: "%20" in a path reads "%20". A part has at
/// most 1024 bytes. Failures are reported only by an empty result and `LastError`.
class URL {
 public:
  /// Builds the address from the parts, unsafe characters as percent escapes. Empty, with the
  /// reason in `LastError`, if a part is too long, the port is out of range, or all parts are
  /// empty.
  std::string GetURL();
  /// Splits `address` into the parts and its query into `Parameters`, which replace the old ones.
  /// If that fails, every part is empty and `LastError` says why. A parameter that occurs twice is
  /// also reported in `LastError`; the parts are then set, the query is kept as it is and
  /// `Parameters` is empty, so that `GetURL` still returns the address. Names that are written
  /// alike in an address, such as "a b" and "a%20b", are the same. May be given one of the object's
  /// own parts.
  void SetURL(std::string_view address);

  /// The scheme in lower case, without the colon; "internal" for an internal address.
  const std::string& Scheme() const { return scheme_; }
  /// The same as `Scheme`.
  const std::string& Protocol() const { return scheme_; }

  /// The host's name or address, an IPv6 address in square brackets.
  const std::string& HostName() const { return parts_.host_name; }
  void SetHostName(std::string_view name) { SetPart(parts_.host_name, name); }
  /// The port, 0..65535; if the address has none, the scheme's default or 0.
  int Port() const { return parts_.port; }
  void SetPort(int port) { parts_.port = port; }
  const std::string& UserName() const { return parts_.user_name; }
  void SetUserName(std::string_view name) { SetPart(parts_.user_name, name); }
  const std::string& Password() const { return parts_.password; }
  void SetPassword(std::string_view password) { SetPart(parts_.password, password); }
  /// The path with its leading "/".
  const std::string& URLPath() const { return parts_.path; }
  void SetURLPath(std::string_view path) { SetPart(parts_.path, path); }

  /// The query with its leading "?", as built from `Parameters`; while they are empty, query and
  /// fragment as parsed.
  std::string ExtraInfo() const;
  /// The query's parameters in their order, names in upper case (ASCII); callers may change them.
  /// Names and values are written to the address as they are: the caller must escape "&", "=" and
  /// "#". A fragment after the query belongs to the last value.
  Dictionary& Parameters() { return parameters_; }
  const Dictionary& Parameters() const { return parameters_; }
  /// The value of the parameter `name`, without regard to case; empty if it does not exist.
  std::string ParameterValue(std::string_view name) const;

  /// Why the last parse or build failed; empty after a successful one.
  const std::string& LastError() const { return last_error_; }
  /// Whether the address begins with "internal:", in any mix of case.
  bool Internal() const { return internal_; }

 private:
  static void SetPart(std::string& part, std::string_view text);
  void ReadParameters();

  UrlParts parts_;
  std::string scheme_;
  bool internal_ = false;
  Dictionary parameters_;
  std::string last_error_;
};

}  // namespace quillan
