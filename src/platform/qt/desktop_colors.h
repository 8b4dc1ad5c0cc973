#pragma once

#include <QMap>
#include <QObject>
#include <QPalette>
#include <QVariantMap>

#include "platform/qt/color_scheme.h"

namespace quillan {

/// What a desktop says about its colours.
struct DesktopColorSettings {
  QPalette theme;     ///< Qt's palette for the desktop; under KDE that of its colour scheme.
  QString gtk_theme;  ///< "Adwaita-dark", where no desktop runs.
  /// The settings of the desktop portal by group and key; empty where there is none.
  QMap<QString, QVariantMap> portal;
  QString x_theme = {};  ///< "Adwaita-dark": what the X settings name; empty without them.
};

/// The scheme that comes nearest to the desktop's colours.
ColorScheme SchemeOf(const DesktopColorSettings& settings);

/// Shows the windows in the scheme of the desktop, now and whenever the desktop changes it, for as
/// long as `parent` exists. Asks Qt, the desktop portal (GNOME, KDE and others), the X settings
/// (Xfce, MATE and others) and the settings of GTK.
void FollowDesktopColors(QObject* parent);

}  // namespace quillan
