#include "dialog/lengths.h"

#include <QApplication>
#include <QFontMetricsF>

#include "platform/qt/appearance.h"

namespace quillan {
namespace {

double TwipsPerPixel() {
  constexpr double kAtUsualFont = 1440.0 / 96.0;
  const QFont font = QApplication::font();
  QFont usual = font;
  usual.setPixelSize(kFontPixels);
  return kAtUsualFont * QFontMetricsF(usual).height() / QFontMetricsF(font).height();
}

}  // namespace

int ToPixels(int twips) { return qRound(twips / TwipsPerPixel()); }

int ToTwips(int pixels) { return qRound(pixels * TwipsPerPixel()); }

}  // namespace quillan
