#pragma once

#include <string>

namespace quillan {

/// Why an entry is not accepted, and where the user is to mend it.
template <typename Field>
struct Refusal {
  std::string message;
  Field field;
  bool select_text = false;  ///< Whether the field's whole text is to be selected for overtyping.
};

}  // namespace quillan
