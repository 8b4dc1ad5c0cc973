#pragma once

#include <string>

namespace quillan {

/// Why an entry is not accepted, and which control the user is to correct it in.
struct Refusal {
  std::string message;
  std::string field;         ///< The control's object name.
  bool select_text = false;  ///< Whether its whole text is to be selected for overtyping.
};

}  // namespace quillan
