#include "platform/qt/color_scheme.h"

#include <gtest/gtest.h>

#include <QApplication>

#include "platform/qt/desktop_colors.h"

namespace quillan {
namespace {

QPalette Theme(const QColor& window, const QColor& text) {
  QPalette palette(window, window);
  palette.setColor(QPalette::WindowText, text);
  return palette;
}

QMap<QString, QVariantMap> Portal(const char* group, const char* key, const QVariant& value) {
  return {{QLatin1String(group), {{QLatin1String(key), value}}}};
}

TEST(DesktopColorsTest, FollowWhatTheDesktopSays) {
  using enum ColorScheme;
  const QPalette light = Theme(QColor(239, 240, 241), QColor(35, 38, 41));
  const QPalette dark = Theme(QColor(42, 46, 50), QColor(252, 252, 252));
  const char* const appearance = "org.freedesktop.appearance";
  const char* const gnome = "org.gnome.desktop.interface";
  const char* const scheme = "color-scheme";
  const auto adwaita_dark = QStringLiteral("Adwaita-dark");
  const std::pair<DesktopColorSettings, ColorScheme> cases[] = {
      {{light, {}, {}}, kLight},
      {{Theme(Qt::white, Qt::black), {}, {}}, kLight},
      {{dark, {}, {}}, kDark},
      {{Theme(Qt::black, Qt::white), {}, {}}, kHighContrastDark},
      {{light, adwaita_dark, {}}, kDark},
      {{light, QStringLiteral("Adwaita:dark"), {}}, kDark},
      {{light, adwaita_dark, Portal(gnome, "gtk-theme", QStringLiteral("Adwaita"))}, kLight},
      {{light, {}, Portal(appearance, scheme, 1U)}, kDark},
      {{dark, {}, Portal(appearance, scheme, 2U)}, kLight},
      {{dark, {}, Portal(appearance, scheme, 0U)}, kDark},
      {{light, {}, Portal(appearance, "contrast", 1U)}, kHighContrastLight},
      {{light, {}, Portal("org.gnome.desktop.a11y.interface", "high-contrast", true)},
       kHighContrastLight},
      {{light, {}, Portal(gnome, "gtk-theme", QStringLiteral("HighContrastInverse"))},
       kHighContrastDark}};
  for (const auto& [settings, expected] : cases) {
    EXPECT_EQ(SchemeOf(settings), expected) << (&settings - &cases[0].first);
  }
}

TEST(ColorSchemeTest, EveryTextIsLegibleInEveryScheme) {
  using enum ColorScheme;
  using Role = QPalette::ColorRole;
  for (const auto scheme : {kDark, kHighContrastLight, kHighContrastDark, kLight}) {
    SetColorScheme(scheme);
    const bool high = scheme == kHighContrastLight || scheme == kHighContrastDark;
    for (const char* widget : {"QWidget", "QTableView"}) {
      const QPalette palette = QApplication::palette(widget);
      for (const auto& [text, background] : {std::pair{Role::WindowText, Role::Window},
                                             {Role::Text, Role::Base},
                                             {Role::ButtonText, Role::Button},
                                             {Role::HighlightedText, Role::Highlight},
                                             {Role::Link, Role::Window},
                                             {Role::ToolTipText, Role::ToolTipBase},
                                             {Role::PlaceholderText, Role::Base}}) {
        EXPECT_GE(Contrast(palette.color(text), palette.color(background)), high ? 7 : 4.5)
            << static_cast<int>(scheme) << ' ' << text << ' ' << widget;
      }
    }
  }
}

}  // namespace
}  // namespace quillan
