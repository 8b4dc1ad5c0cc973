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
// alone in the order of the answers, and outlines that can be seen in every colour scheme.
class ProgramStyle final : public QProxyStyle {
 public:
  ProgramStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* result) const override {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    if (hint == SH_DialogButtonLayout) return QDialogButtonBox::WinLayout;
    // Fusion's lines are darker than the window, which may be black.
    if (hint == SH_Table_GridLineColor && CurrentColorScheme() == ColorScheme::kHighContrastDark) {
      return static_cast<int>(OutlineColor().darker().rgb());
    }
    return QProxyStyle::styleHint(hint, option, widget, result);
  }

  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override {
    const int usual = QProxyStyle::pixelMetric(metric, option, widget);
    switch (metric) {
      case PM_MenuPanelWidth:
        return 1;  // The outline is beside what is highlighted.
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

  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override {
    const QSize usual = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (type != CT_PushButton) return usual;
    // Fusion leaves hardly a pixel beside a caption that is wider than its narrowest button.
    return usual.expandedTo({contents.width() + 2 * QApplication::font().pixelSize(), 0});
  }

  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_TabBarTabShape) DrawOutline(*option, option->rect, *painter);
    if (element == CE_MenuItem && CurrentColorScheme() != ColorScheme::kLight &&
        qstyleoption_cast<const QStyleOptionMenuItem*>(option)->menuItemType ==
            QStyleOptionMenuItem::Separator) {
      const int middle = option->rect.center().y();
      painter->setPen(OutlineColor());
      painter->drawLine(option->rect.left(), middle, option->rect.right(), middle);
    }
  }

  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ScrollBar) {
      DrawOutline(*option, subControlRect(control, option, SC_ScrollBarSlider, widget), *painter);
    }
  }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    if (element != PE_IndicatorCheckBox) {
      QProxyStyle::drawPrimitive(element, option, painter, widget);
      if (element == PE_PanelButtonCommand || element == PE_PanelLineEdit || element == PE_Frame ||
          element == PE_FrameMenu) {
        DrawOutline(*option, option->rect, *painter);
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
  static QColor OutlineColor() {
    return QApplication::palette().color(QPalette::Disabled, QPalette::Text);
  }

  // Fusion's outlines are darker than the window, which shows nothing on a dark one.
  static void DrawOutline(const QStyleOption& option, const QRect& rect, QPainter& painter) {
    const ColorScheme scheme = CurrentColorScheme();
    if (scheme == ColorScheme::kLight) return;
    // The dark scheme's highlight is dark enough for white text on it, too dark for a thin line.
    const auto focused = scheme == ColorScheme::kDark ? QPalette::Link : QPalette::Highlight;
    painter.setPen((option.state & State_HasFocus) != 0 ? QApplication::palette().color(focused)
                                                        : OutlineColor());
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect.adjusted(0, 0, -1, -1));
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
