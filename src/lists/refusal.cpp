#include "lists/refusal.h"

#include "platform/text/encoding.h"

namespace quillan {

std::string RefuseDescription(std::string_view text, int max_length) {
  const auto longest = static_cast<size_t>(max_length);
  if (longest == 0 || text.size() <= longest) return {};
  const size_t length = text::Utf8ToUtf16(text).size();
  if (length <= longest) return {};
  return "The description has " + std::to_string(length) + " characters; the database takes " +
         std::to_string(longest) + ".";
}

}  // namespace quillan
