#include "platform/qt/appearance.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPalette>
#include <QProxyStyle>

namespace quillan {
namespace {

// The buttons of a message show their caption alone, and stand in the order of the answers.
class ProgramStyle final : public QProxyStyle {
 public:
  ProgramStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    if (hint == SH_DialogButtonLayout) return QDialogButtonBox::WinLayout;
    return QProxyStyle::styleHint(hint, option, widget, result);
  }
};

QPalette LightPalette() {
  const QColor window(240, 240, 240);
  QPalette palette(window, window);
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::AlternateBase, QColor(246, 248, 252));
  palette.setColor(QPalette::ToolTipBase, QColor(255, 255, 225));
  // Strong enough for the outline that shows the focus.
  palette.setColor(QPalette::Highlight, QColor(64, 104, 208));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor(140, 140, 140));
  }
  return palette;
}

}  // namespace

void InstallAppearance() {
  QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/LiberationSans-Regular.ttf"));
  QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/LiberationSans-Bold.ttf"));
  QFont font(QStringLiteral("Liberation Sans"));
  font.setPixelSize(kFontPixels);
  QFont::insertSubstitution(QStringLiteral("Tahoma"), font.family());
  QApplication::setFont(font);
  QApplication::setStyle(new ProgramStyle);
  QApplication::setPalette(LightPalette());
}

}  // namespace quillan
