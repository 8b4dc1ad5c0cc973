#pragma once

#include <string>
#include <string_view>

namespace quillan {

/// Why an entry is not accepted, and which control the user is to correct it in.
struct Refusal {
  std::string message;
  std::string field;         ///< The control's object name.
  bool select_text = false;  ///< Whether its whole text is to be selected for overtyping.
};

/// Why the database cannot take `text` as a description: it has more than `max_length` characters,
/// counted in UTF-16 units as the columns' sizes are. Empty if it can; 0 is no limit.
std::string RefuseDescription(std::string_view text, int max_length);

}  // namespace quillan
