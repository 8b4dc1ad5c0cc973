#pragma once

#include <array>
#include <cstdint>

#include "platform/grid/grid.h"

namespace quillan {

/// Hands out distinct colours by number, for series or categories drawn side by side.
class ColorDistribution {
 public:
  ColorDistribution() { Refresh(); }

  /// The colour of item `index`, counted from 0; after fifteen items the colours repeat. A negative
  /// `index` is set to 0, in the caller's variable too.
  Color LookupColor(std::int16_t& index) const;
  /// Fills the palette; done when the object is made.
  void Refresh();

 private:
  std::array<Color, 16> palette_{};  // The last slot stays black and is never handed out.
};

}  // namespace quillan
