#pragma once

namespace quillan {

/// The distance between neighbouring controls, in twips.
inline constexpr int kMargin = 100;

/// A length of the design, given in twips (1/1440 inch), in Qt's device-independent pixels: 15
/// twips a pixel at the default font. A larger font scales all lengths by the height of its text.
int ToPixels(int twips);

/// The length whose `ToPixels` is `pixels`.
int ToTwips(int pixels);

}  // namespace quillan
