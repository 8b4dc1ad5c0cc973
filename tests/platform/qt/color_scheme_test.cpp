#include "platform/qt/color_scheme.h"

#include <gtest/gtest.h>

#include <QApplication>

#include "platform/qt/desktop_colors.h"
#include "platform/qt/x_settings.h"

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
      {{light, {}, Portal(gnome, "gtk-theme", QStringLiteral("Adwaita")), adwaita_dark}, kDark},
      {{light, adwaita_dark, {}, QStringLiteral("Adwaita")}, kLight},
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

// Other programs write them: a property that ends too early must do no harm.
TEST(XSettingsTest, NameTheThemeAsFarAsTheyCanBeRead) {
  constexpr char kProperty[] =
      "\0...\1\0\0\0\4\0\0\0"
      "\0.\23\0Gtk/CursorThemeSize.\1\0\0\0\30\0\0\0"
      "\2.\5\0Color...\1\0\0\0rrggbbaa"
      "\1.\21\0Net/IconThemeName...\1\0\0\0\7\0\0\0Adwaita."
      "\1.\15\0Net/ThemeName...\1\0\0\0\14\0\0\0Adwaita-dark";
  const QByteArray property(kProperty, sizeof kProperty - 1);
  EXPECT_EQ(ThemeInXSettings(property), QStringLiteral("Adwaita-dark"));
  for (qsizetype size = 0; size < property.size(); ++size) {
    EXPECT_EQ(ThemeInXSettings(property.left(size)), QString()) << size;
  }
  QByteArray other_order = property;
  other_order[0] = 1;
  EXPECT_EQ(ThemeInXSettings(other_order), QString()) << "a number of settings beyond its end";
  constexpr char kBigEndian[] = "\1...\0\0\0\1\0\0\0\1\1.\0\15Net/ThemeName...\0\0\0\1\0\0\0\4Dark";
  EXPECT_EQ(ThemeInXSettings({kBigEndian, sizeof kBigEndian - 1}), QStringLiteral("Dark"));
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
