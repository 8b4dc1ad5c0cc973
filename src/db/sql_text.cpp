#include "db/sql_text.h"

#include "platform/text/ascii.h"

namespace quillan {

std::string SqlText(std::string_view text) {
  return (text::IsAscii(text) ? "'" : "N'") + text::ReplaceAll(text, "'", "''") + "'";
}

}  // namespace quillan
