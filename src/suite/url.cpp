#include "suite/url.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "platform/text/ascii.h"

namespace quillan {
namespace {

// A part arrives in a buffer of fixed length: its text ends at the first NUL, and where it fills
// the buffer, the blanks at its ends are padding.
std::string TakePart(std::string_view part) {
  if (part.size() == kUrlPartLimit) part = text::TrimSpaces(part);
  return std::string(part);
}

}  // namespace

std::string URL::GetURL() {
  UrlParts parts = parts_;
  parts.extra_info = ExtraInfo();
  last_error_.clear();
  return CreateUrl(parts, last_error_).value_or("");
}

void URL::SetURL(std::string_view address) {
  // The address may be one of the parts that are about to be dropped.
  std::string error;
  const std::optional<std::string> canonical = CanonicalizeUrl(address, error);
  std::optional<UrlParts> parts;
  if (canonical) parts = CrackUrl(*canonical, error);
  *this = URL();
  last_error_ = std::move(error);
  if (!parts) return;
  parts_ = std::move(*parts);
  for (std::string* part : {&parts_.scheme_name, &parts_.host_name, &parts_.user_name,
                            &parts_.password, &parts_.path, &parts_.extra_info}) {
    *part = TakePart(*part);
  }
  internal_ = parts_.scheme_name == "internal";
  scheme_ = internal_ ? "internal" : parts_.scheme_name;
  ReadParameters();
}

std::string URL::ExtraInfo() const {
  std::string extra;
  for (const auto& [name, value] : parameters_.Entries()) {
    extra.append(extra.empty() ? "?" : "&").append(name).append("=").append(value);
  }
  return extra.empty() ? parts_.extra_info : extra;
}

std::string URL::ParameterValue(std::string_view name) const {
  const std::string* value = parameters_.Item(name);
  if (value == nullptr) value = parameters_.Item(text::ToUpperAscii(name));
  return value != nullptr ? *value : std::string();
}

void URL::SetPart(std::string& part, std::string_view text) {
  part = text.substr(0, text.find('\0'));
}

void URL::ReadParameters() {
  std::string_view rest = parts_.extra_info;
  if (rest.size() < 2 || rest.front() != '?') return;
  rest.remove_prefix(1);
  std::set<std::string> written;
  for (bool more = true; more;) {
    const std::string_view piece = rest.substr(0, rest.find('&'));
    more = piece.size() < rest.size();
    if (more) rest.remove_prefix(piece.size() + 1);
    const size_t equals = std::min(piece.find('='), piece.size());
    const std::string name = text::ToUpperAscii(piece.substr(0, equals));
    parameters_.Add(name, piece.substr(std::min(equals + 1, piece.size())));
    if (!written.insert(EscapeUnsafe(name)).second) {
      parameters_.RemoveAll();
      last_error_ = "The parameter \"" + name + "\" occurs twice in the address.";
      return;
    }
  }
}

}  // namespace quillan
