#include "suite/url_routines.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <initializer_list>
#include <optional>
#include <utility>

#include "platform/text/ascii.h"

namespace quillan {
namespace {

constexpr int kLargestPort = 65535;
constexpr std::string_view kHexDigits = "0123456789ABCDEF";
constexpr std::string_view kWhiteSpace = " \t\r\n\f\v";
// The unsafe characters of RFC 1738, section 2.2, without those that addresses carry as they are
// in practice ("%", "#", "~" and the square brackets).
constexpr std::string_view kUnsafe = " \"<>\\^`{|}";
// What would end a part early when it stood in it as it is.
constexpr std::string_view kEndsUserName = ":/?#@[]";
constexpr std::string_view kEndsPassword = "/?#@[]";
constexpr std::string_view kEndsIPv6Host = "/?#@";
constexpr std::string_view kEndsFileHost = "/?#@[]";  // "C:" is the host of a file on a drive.
constexpr std::string_view kEndsHost = "/?#@[]:";
constexpr std::string_view kEndsPath = "?#";
constexpr std::string_view kEndsRelativePath = "?#:";

// The schemes that have a port of their own.
constexpr std::array<std::pair<std::string_view, int>, 4> kPorts = {
    {{"ftp", 21}, {"gopher", 70}, {"http", 80}, {"https", 443}}};

int DefaultPort(std::string_view scheme) {
  for (const auto& [name, port] : kPorts) {
    if (text::EqualsIgnoringCase(name, scheme)) return port;
  }
  return 0;
}

// The stretches of an address, each without the marks around it but the extra information's own.
struct Stretches {
  std::string_view scheme;
  bool has_authority = false;
  std::optional<std::string_view> user_info;
  std::string_view host_and_port;
  std::string_view path;
  std::string_view extra;
};

bool IsLetter(char c) {
  const char upper = text::ToUpperAscii(c);
  return upper >= 'A' && upper <= 'Z';
}

// The length of the scheme at the start of `address`, as RFC 3986, section 3.1, spells it; 0
// without one.
size_t SchemeLength(std::string_view address) {
  if (address.empty() || !IsLetter(address.front())) return 0;
  for (size_t i = 1; i < address.size(); ++i) {
    const char c = address[i];
    if (c == ':') return i;
    if (!IsLetter(c) && !(c >= '0' && c <= '9') && c != '+' && c != '-' && c != '.') return 0;
  }
  return 0;
}

Stretches Split(std::string_view address) {
  Stretches result;
  const size_t extra = std::min(address.find_first_of("?#"), address.size());
  result.extra = address.substr(extra);
  address = address.substr(0, extra);
  if (const size_t length = SchemeLength(address); length > 0) {
    result.scheme = address.substr(0, length);
    address.remove_prefix(length + 1);
  }
  if (address.starts_with("//")) {
    result.has_authority = true;
    address.remove_prefix(2);
    std::string_view authority = address.substr(0, address.find('/'));
    address.remove_prefix(authority.size());
    // The last one: a user name may hold the sign too.
    if (const size_t at = authority.rfind('@'); at != std::string_view::npos) {
      result.user_info = authority.substr(0, at);
      authority.remove_prefix(at + 1);
    }
    result.host_and_port = authority;
  }
  result.path = address;
  return result;
}

void AppendEscaped(std::string_view text, std::string_view also_unsafe, bool escape_non_ascii,
                   std::string& address) {
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool unsafe = byte < 0x20 || byte == 0x7F || (byte >= 0x80 && escape_non_ascii) ||
                        kUnsafe.find(c) != std::string_view::npos ||
                        also_unsafe.find(c) != std::string_view::npos;
    if (unsafe) {
      address += {'%', kHexDigits[byte >> 4], kHexDigits[byte & 15]};
    } else {
      address += c;
    }
  }
}

std::string_view CutAtNul(std::string_view text) { return text.substr(0, text.find('\0')); }

// Splits "host:port"; the port stays as it is where none is named.
// Returns what is wrong; empty if nothing is.
std::string CrackHost(std::string_view text, UrlParts& parts) {
  size_t host_end = std::min(text.find(':'), text.size());
  if (text.starts_with('[')) {
    const size_t bracket = text.find(']');
    if (bracket == std::string_view::npos) {
      return "The host \"" + std::string(text) + "\" has no closing bracket.";
    }
    host_end = bracket + 1;
  } else if (parts.scheme_name == "file") {
    host_end = text.size();  // "C:" of a file on a drive.
  }
  parts.host_name = text.substr(0, host_end);
  std::string_view port = text.substr(host_end);
  if (port.empty() || port == ":") return {};
  const bool has_colon = port.front() == ':';
  if (has_colon) port.remove_prefix(1);
  unsigned number = 0;
  const auto read = std::from_chars(port.data(), port.data() + port.size(), number);
  if (!has_colon || read.ec != std::errc() || read.ptr != port.data() + port.size() ||
      number > kLargestPort) {
    // What stands here may be part of a password that contains a "/", so it is not repeated.
    return "The port is not a number from 0 to 65535.";
  }
  parts.port = static_cast<int>(number);
  return {};
}

using NamedText = std::pair<const char*, const std::string&>;

// What is wrong with the parts' lengths; empty if nothing is.
std::string CheckLengths(std::initializer_list<NamedText> texts) {
  for (const auto& [name, text] : texts) {
    if (text.size() > kUrlPartLimit) {
      return std::string("The ") + name + " of the address has " + std::to_string(text.size()) +
             " characters; at most " + std::to_string(kUrlPartLimit) + " are allowed.";
    }
  }
  return {};
}

std::string CheckLengths(const UrlParts& parts) {
  return CheckLengths({{"scheme", parts.scheme_name},
                       {"user name", parts.user_name},
                       {"password", parts.password},
                       {"host name", parts.host_name},
                       {"path", parts.path}});
}

void AppendHost(const UrlParts& parts, std::string& address) {
  const std::string& host = parts.host_name;
  const bool bare_ipv6 = std::count(host.begin(), host.end(), ':') > 1 &&
                         host.find_first_not_of("0123456789ABCDEFabcdef:.") == std::string::npos;
  if (bare_ipv6) {
    address += '[';
    AppendEscaped(host, kEndsIPv6Host, false, address);
    address += ']';
  } else if (host.starts_with('[') && host.find(']') == host.size() - 1) {
    AppendEscaped(host, kEndsIPv6Host, false, address);
  } else {
    AppendEscaped(host, parts.scheme_name == "file" ? kEndsFileHost : kEndsHost, false, address);
  }
}

std::string Compose(const UrlParts& parts) {
  std::string address;
  std::string_view ends_path = kEndsPath;
  if (!parts.scheme_name.empty()) address += parts.scheme_name + ":";
  const bool has_user = !parts.user_name.empty() || !parts.password.empty();
  const bool has_port = parts.port != 0 && parts.port != DefaultPort(parts.scheme_name);
  if (parts.has_authority || has_user || has_port || !parts.host_name.empty() ||
      parts.path.starts_with("//")) {
    address += "//";
    if (has_user) {
      AppendEscaped(parts.user_name, kEndsUserName, true, address);
      if (!parts.password.empty()) {
        address += ':';
        AppendEscaped(parts.password, kEndsPassword, true, address);
      }
      address += '@';
    }
    AppendHost(parts, address);
    if (has_port) address += ":" + std::to_string(parts.port);
    if (!parts.path.empty() && !parts.path.starts_with('/')) address += '/';
  } else if (address.empty() && SchemeLength(parts.path) > 0) {
    ends_path = kEndsRelativePath;  // Its colon would end a scheme.
  }
  AppendEscaped(parts.path, ends_path, true, address);
  address += EscapeUnsafe(parts.extra_info);
  return address;
}

}  // namespace

std::optional<std::string> CanonicalizeUrl(std::string_view address, std::string& error) {
  address = CutAtNul(address);
  address.remove_prefix(std::min(address.find_first_not_of(kWhiteSpace), address.size()));
  if (address.find_first_of("?#") == std::string_view::npos) {
    address = address.substr(0, address.find_last_not_of(kWhiteSpace) + 1);
  }
  if (address.empty()) {
    error = "The address is empty.";
    return std::nullopt;
  }

  const Stretches stretches = Split(address);
  std::string canonical;
  for (const char c : stretches.scheme) canonical += IsLetter(c) ? static_cast<char>(c | 0x20) : c;
  if (!stretches.scheme.empty()) canonical += ':';
  if (stretches.has_authority) canonical += "//";
  if (stretches.user_info) {
    AppendEscaped(*stretches.user_info, "@", true, canonical);
    canonical += '@';
  }
  AppendEscaped(stretches.host_and_port, {}, false, canonical);
  AppendEscaped(stretches.path, {}, true, canonical);
  return canonical.append(stretches.extra);
}

std::string EscapeUnsafe(std::string_view text) {
  std::string escaped;
  AppendEscaped(text, {}, true, escaped);
  return escaped;
}

std::optional<UrlParts> CrackUrl(std::string_view canonical, std::string& error) {
  const Stretches stretches = Split(canonical);
  UrlParts parts;
  parts.scheme_name = stretches.scheme;
  parts.port = DefaultPort(stretches.scheme);
  parts.has_authority = stretches.has_authority;
  const std::string_view user_info = stretches.user_info.value_or(std::string_view());
  const size_t colon = std::min(user_info.find(':'), user_info.size());
  parts.user_name = user_info.substr(0, colon);
  parts.password = user_info.substr(std::min(colon + 1, user_info.size()));
  parts.path = stretches.path;
  parts.extra_info = stretches.extra;
  error = CrackHost(stretches.host_and_port, parts);
  if (error.empty()) error = CheckLengths(parts);
  if (error.empty()) error = CheckLengths({{"query", parts.extra_info}});
  return error.empty() ? std::optional(std::move(parts)) : std::nullopt;
}

std::optional<std::string> CreateUrl(const UrlParts& parts, std::string& error) {
  if (parts.port < 0 || parts.port > kLargestPort) {
    error = "The port " + std::to_string(parts.port) + " is not a number from 0 to 65535.";
  } else {
    error = CheckLengths(parts);
  }
  std::string address = Compose(parts);
  if (error.empty() && address.empty()) error = "The address has no parts.";
  return error.empty() ? std::optional(std::move(address)) : std::nullopt;
}

}  // namespace quillan
