#pragma once

#include <QRect>

#include "platform/twips.h"

namespace quillan {

/// Twips (1/1440 inch) on a screen of 96 dots per inch, the unit of Qt's device-independent pixels.
inline constexpr double kTwipsPerPixel = 1440.0 / 96.0;

inline int ToPixels(int twips) { return qRound(twips / kTwipsPerPixel); }
inline int ToTwips(int pixels) { return qRound(pixels * kTwipsPerPixel); }

/// The edges, not the lengths, are rounded, so that neighbours keep their distance.
inline QRect ToPixels(const TwipsRect& rect) {
  const int left = ToPixels(rect.left);
  const int top = ToPixels(rect.top);
  return {left, top, ToPixels(rect.left + rect.width) - left,
          ToPixels(rect.top + rect.height) - top};
}

}  // namespace quillan
