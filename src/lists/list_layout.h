#pragma once

#include <vector>

#include "platform/twips.h"

namespace quillan {

/// Where the grid and the buttons of a list stand in a control of `width` × `height` twips: the
/// buttons, all of one size, in a column one margin from the right edge, `top_buttons` of them from
/// the top down and `bottom_buttons` flush with the bottom, the grid in what is left.
struct ListLayout {
  ListLayout(int width, int height, int button_width, int button_height, int top_buttons,
             int bottom_buttons);

  TwipsRect grid;
  std::vector<TwipsRect> buttons;  ///< From top to bottom.
};

}  // namespace quillan
