#pragma once

#include <QColor>
#include <QPalette>

namespace quillan {

/// The colours of all windows.
enum class ColorScheme { kLight, kDark, kHighContrastLight, kHighContrastDark };

/// The contrast ratio of two opaque colours by the Web Content Accessibility Guidelines, 1..21.
double Contrast(const QColor& one, const QColor& other);

/// Shows the windows, also those that are open, in the colours of the scheme.
void SetColorScheme(ColorScheme scheme);
/// The scheme that was set last; light at first.
ColorScheme CurrentColorScheme();

/// A mark's colour as it is to be painted on `background`. In the light scheme it is the colour as
/// given; in the others it is lightened or darkened to a contrast of at least 4.5 : 1, or 7 : 1
/// where the contrast is to be high.
QColor Legible(const QColor& given, const QColor& background);

}  // namespace quillan
