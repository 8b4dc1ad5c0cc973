#pragma once

namespace quillan {

/// The size of the default font: eight and a quarter points on a screen of 96 dots per inch, at
/// which every caption fits its button.
inline constexpr int kFontPixels = 11;

/// Gives the application its one font and style, the same on every desktop, and the light colours;
/// a desktop with a larger font than the usual nine points gets a font that is larger in
/// proportion. To be called once, before the first window.
void InstallAppearance();

}  // namespace quillan
