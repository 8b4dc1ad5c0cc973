#pragma once

namespace quillan {

/// A place within a window, in twips (1/1440 inch).
struct TwipsRect {
  int left;
  int top;
  int width;
  int height;
};

/// The margin between controls, in twips.
inline constexpr int kLayoutMargin = 100;

}  // namespace quillan
