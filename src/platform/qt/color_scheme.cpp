#include "platform/qt/color_scheme.h"

#include <algorithm>
#include <cmath>

#include <QApplication>

namespace quillan {
namespace {

// What the guidelines ask of text, ordinarily and where the contrast is enhanced.
constexpr double kLegible = 4.5;
constexpr double kHighContrast = 7;

ColorScheme current_scheme = ColorScheme::kLight;

struct Colors {
  QColor window;
  QColor base;
  QColor button;
  QColor text;
  QColor disabled;
  QColor placeholder;
  QColor highlight;  // Strong enough for the outline that shows the focus.
  QColor highlighted;
  QColor selected_row;  // In the light scheme so dark that red, which is given, has 4.5 : 1 on it.
  QColor selected_text;
  QColor link;
  QColor tool_tip;
};

Colors ColorsOf(ColorScheme scheme) {
  switch (scheme) {
    case ColorScheme::kDark:
      return {.window = {45, 45, 48},
              .base = {30, 30, 30},
              .button = {62, 62, 66},
              .text = {235, 235, 235},
              .disabled = {130, 130, 130},
              .placeholder = {150, 150, 150},
              .highlight = {64, 104, 208},
              .highlighted = Qt::white,
              .selected_row = {20, 50, 110},
              .selected_text = Qt::white,
              .link = {120, 170, 255},
              .tool_tip = {70, 70, 60}};
    case ColorScheme::kHighContrastLight:
      return {.window = Qt::white,
              .base = Qt::white,
              .button = {235, 235, 235},
              .text = Qt::black,
              .disabled = {100, 100, 100},
              .placeholder = {80, 80, 80},
              .highlight = {0, 0, 120},
              .highlighted = Qt::white,
              .selected_row = {0, 0, 60},
              .selected_text = Qt::white,
              .link = {0, 0, 160},
              .tool_tip = Qt::white};
    case ColorScheme::kHighContrastDark:
      return {.window = Qt::black,
              .base = Qt::black,
              .button = {56, 56, 56},
              .text = Qt::white,
              .disabled = {150, 150, 150},
              .placeholder = {170, 170, 170},
              .highlight = {255, 255, 0},
              .highlighted = Qt::black,
              .selected_row = Qt::white,
              .selected_text = Qt::black,
              .link = {140, 200, 255},
              .tool_tip = Qt::black};
    case ColorScheme::kLight:
      break;
  }
  return {.window = {240, 240, 240},
          .base = Qt::white,
          .button = {240, 240, 240},
          .text = Qt::black,
          .disabled = {140, 140, 140},
          .placeholder = {110, 110, 110},
          .highlight = {64, 104, 208},
          .highlighted = Qt::white,
          .selected_row = {0, 16, 64},
          .selected_text = Qt::white,
          .link = {0, 0, 255},
          .tool_tip = {255, 255, 225}};
}

double Luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

bool IsHigh(ColorScheme scheme) {
  return scheme == ColorScheme::kHighContrastLight || scheme == ColorScheme::kHighContrastDark;
}

}  // namespace

double Contrast(const QColor& one, const QColor& other) {
  const auto [dark, light] = std::minmax({Luminance(one), Luminance(other)});
  return (light + 0.05) / (dark + 0.05);
}

void SetColorScheme(ColorScheme scheme) {
  current_scheme = scheme;
  const Colors colors = ColorsOf(scheme);
  // Qt derives the shades of frames from these two.
  QPalette palette(colors.button, colors.window);
  const auto set = [&](const QColor& color, std::initializer_list<QPalette::ColorRole> roles) {
    for (const auto role : roles) palette.setColor(role, color);
  };
  set(colors.base, {QPalette::Base, QPalette::AlternateBase});
  set(colors.text, {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                    QPalette::BrightText, QPalette::ToolTipText});
  set(colors.tool_tip, {QPalette::ToolTipBase});
  set(colors.placeholder, {QPalette::PlaceholderText});
  set(colors.link, {QPalette::Link, QPalette::LinkVisited});
  set(colors.highlight, {QPalette::Highlight});
  set(colors.highlighted, {QPalette::HighlightedText});
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, colors.disabled);
  }
  QApplication::setPalette(palette);
  set(colors.selected_row, {QPalette::Highlight});
  set(colors.selected_text, {QPalette::HighlightedText});
  QApplication::setPalette(palette, "QTableView");
}

ColorScheme CurrentColorScheme() { return current_scheme; }

QColor Legible(const QColor& given, const QColor& background) {
  if (current_scheme == ColorScheme::kLight) return given;
  const double wanted = IsHigh(current_scheme) ? kHighContrast : kLegible;
  const bool on_dark = Contrast(background, Qt::white) > Contrast(background, Qt::black);
  constexpr double kStep = 0.01;
  // What is faint on white is to be faint on black.
  double lightness = on_dark ? 1 - given.lightnessF() : given.lightnessF();
  const auto shade = [&] {
    return QColor::fromHslF(std::max(given.hslHueF(), 0.0F), given.hslSaturationF(),
                            static_cast<float>(lightness));
  };
  while (Contrast(shade(), background) < wanted && lightness > 0 && lightness < 1) {
    lightness = std::clamp(lightness + (on_dark ? kStep : -kStep), 0.0, 1.0);
  }
  return shade();
}

}  // namespace quillan
