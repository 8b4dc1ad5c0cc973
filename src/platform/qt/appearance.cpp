#include "platform/qt/appearance.h"

#include <algorithm>

#include <QApplication>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>

#include "platform/qt/color_scheme.h"

namespace quillan {
namespace {

// The font of a desktop with the usual size of nine points, in pixels.
constexpr int kUsualDesktopPixels = 12;

// Fusion with lengths that follow the size of the font, buttons of messages that show their caption
// alone in the order of the answers, and check boxes with an outline that can be seen.
class ProgramStyle final : public QProxyStyle {
 public:
  ProgramStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    if (hint == SH_DialogButtonLayout) return QDialogButtonBox::WinLayout;
    return QProxyStyle::styleHint(hint, option, widget, result);
  }

  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override {
    const int usual = QProxyStyle::pixelMetric(metric, option, widget);
    switch (metric) {
      case PM_IndicatorWidth:
      case PM_IndicatorHeight:
      case PM_CheckBoxLabelSpacing:
      case PM_ScrollBarExtent:
      case PM_ScrollBarSliderMin:
      case PM_TabBarTabHSpace:
      case PM_TabBarTabVSpace:
      case PM_HeaderMarkSize:
      case PM_MessageBoxIconSize:
      case PM_LayoutLeftMargin:
      case PM_LayoutTopMargin:
      case PM_LayoutRightMargin:
      case PM_LayoutBottomMargin:
      case PM_LayoutHorizontalSpacing:
      case PM_LayoutVerticalSpacing:
        return usual * QApplication::font().pixelSize() / kFontPixels;
      default:
        return usual;
    }
  }

  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_TabBarTabShape) DrawOutline(*option, *painter);
  }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    if (element != PE_IndicatorCheckBox) {
      QProxyStyle::drawPrimitive(element, option, painter, widget);
      if (element == PE_PanelButtonCommand || element == PE_PanelLineEdit || element == PE_Frame) {
        DrawOutline(*option, *painter);
      }
      return;
    }
    QStyleOptionButton box;
    box.QStyleOption::operator=(*option);
    // Fusion darkens it for the outline.
    const bool dark = option->palette.color(QPalette::Base).lightness() < 128;
    box.palette.setColor(QPalette::Window, dark ? QColor(210, 210, 210) : QColor(90, 90, 90));
    QProxyStyle::drawPrimitive(element, &box, painter, widget);
  }

 private:
  // Fusion's outlines are darker than the window, which shows nothing on a dark one.
  static void DrawOutline(const QStyleOption& option, QPainter& painter) {
    if (CurrentColorScheme() == ColorScheme::kLight) return;
    const bool focus = (option.state & State_HasFocus) != 0;
    const QPalette palette = QApplication::palette();
    painter.setPen(focus ? palette.color(QPalette::Highlight)
                         : palette.color(QPalette::Disabled, QPalette::Text));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
  }
};

// As much larger than usual as the desktop's own font.
int FontPixels() {
  const int desktop = QFontInfo(QApplication::font()).pixelSize();
  return std::max(kFontPixels, qRound(1.0 * kFontPixels * desktop / kUsualDesktopPixels));
}

}  // namespace

void InstallAppearance() {
  QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/LiberationSans-Regular.ttf"));
  QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/LiberationSans-Bold.ttf"));
  QFont font(QStringLiteral("Liberation Sans"));
  font.setPixelSize(FontPixels());
  QFont::insertSubstitution(QStringLiteral("Tahoma"), font.family());
  QApplication::setFont(font);
  // The application owns its style.
  // NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks)
  QApplication::setStyle(new ProgramStyle);
  SetColorScheme(ColorScheme::kLight);
  // NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)
}

}  // namespace quillan
