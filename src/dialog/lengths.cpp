#include "dialog/lengths.h"

#include <QApplication>
#include <QFontMetricsF>

#include "platform/qt/appearance.h"

namespace quillan {

int ToPixels(int twips) {
  constexpr double kTwipsPerPixel = 1440.0 / 96.0;
  const QFont font = QApplication::font();
  QFont usual = font;
  usual.setPixelSize(kFontPixels);
  const double scale = QFontMetricsF(font).height() / QFontMetricsF(usual).height();
  return qRound(twips / kTwipsPerPixel * scale);
}

}  // namespace quillan
