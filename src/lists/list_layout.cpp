#include "lists/list_layout.h"

namespace quillan {

ListLayout::ListLayout(int width, int height, int button_width, int button_height, int top_buttons,
                       int bottom_buttons)
    : grid{0, 0, width - (button_width + 2 * kLayoutMargin), height} {
  const int left = width - (button_width + kLayoutMargin);
  const int step = button_height + kLayoutMargin;
  for (int i = 0; i < top_buttons; ++i) {
    buttons.push_back({left, i * step, button_width, button_height});
  }
  for (int i = bottom_buttons; i > 0; --i) {
    buttons.push_back({left, height + kLayoutMargin - i * step, button_width, button_height});
  }
}

}  // namespace quillan
