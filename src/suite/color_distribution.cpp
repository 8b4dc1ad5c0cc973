#include "suite/color_distribution.h"

#include <algorithm>

namespace quillan {
namespace {

constexpr std::array<Color, 15> kColors = {
    Rgb(255, 0, 0),     Rgb(0, 153, 0),     Rgb(0, 0, 255),   Rgb(153, 0, 0),
    Rgb(0, 153, 153),   Rgb(255, 153, 102), Rgb(200, 0, 200), Rgb(255, 102, 102),
    Rgb(51, 200, 51),   Rgb(153, 153, 255), Rgb(153, 153, 0), Rgb(200, 102, 200),
    Rgb(102, 102, 102), Rgb(153, 102, 51),  Rgb(102, 102, 0)};

}  // namespace

Color ColorDistribution::LookupColor(std::int16_t& index) const {
  index = std::max<std::int16_t>(index, 0);
  return palette_[static_cast<size_t>(index) % kColors.size()];
}

void ColorDistribution::Refresh() { std::copy(kColors.begin(), kColors.end(), palette_.begin()); }

}  // namespace quillan
