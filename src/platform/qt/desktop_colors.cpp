#include "platform/qt/desktop_colors.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>

#include "platform/qt/x_settings.h"

namespace quillan {
namespace {

// The groups of the portal's settings.
constexpr QLatin1String kAppearance("org.freedesktop.appearance");
constexpr QLatin1String kGnomeAccess("org.gnome.desktop.a11y.interface");
constexpr QLatin1String kGnome("org.gnome.desktop.interface");

using PortalSettings = QMap<QString, QVariantMap>;

// The palette that the desktop's theme gives Qt, without what the program has set.
QPalette ThemePalette() {
  QApplication::setPalette(QPalette());
  return QApplication::palette();
}

// What GTK uses where no desktop tells it.
QString GtkTheme() {
  if (QString theme = qEnvironmentVariable("GTK_THEME"); !theme.isEmpty()) return theme;
  const QSettings file(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                           QStringLiteral("/gtk-3.0/settings.ini"),
                       QSettings::IniFormat);
  const QString theme = file.value(QStringLiteral("Settings/gtk-theme-name")).toString();
  const bool dark =
      file.value(QStringLiteral("Settings/gtk-application-prefer-dark-theme")).toBool();
  return dark ? theme + QStringLiteral(":dark") : theme;
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() <
         palette.color(QPalette::WindowText).lightness();
}

class DesktopColors final : public QObject {
  Q_OBJECT

 public:
  explicit DesktopColors(QObject* parent) : QObject(parent) {
    settings_.theme = ThemePalette();
    settings_.gtk_theme = GtkTheme();
    settings_.x_theme = x_settings_.Theme();
    Apply();
    AskPortal();
    theme_changed_.setSingleShot(true);
    connect(&theme_changed_, &QTimer::timeout, this, [this] {
      settings_.theme = ThemePalette();
      Apply();
    });
    QCoreApplication::instance()->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    // Every window is told of a change; one look at the new theme is enough.
    if (event->type() == QEvent::ThemeChange) theme_changed_.start();
    return QObject::eventFilter(watched, event);
  }

 private slots:
  void OnPortalSetting(const QString& group, const QString& key, const QDBusVariant& value) {
    settings_.portal[group][key] = value.variant();
    Apply();
  }

 private:
  void AskPortal();
  void OnPortalSettings(QDBusPendingCallWatcher* call);
  void Apply() { SetColorScheme(SchemeOf(settings_)); }

  DesktopColorSettings settings_;
  XSettings x_settings_{[this] {
    settings_.x_theme = x_settings_.Theme();
    Apply();
  }};
  QTimer theme_changed_;
};

void DesktopColors::AskPortal() {
  // Without an address D-Bus would start a bus of its own.
  if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return;
  const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
  const auto interface = QStringLiteral("org.freedesktop.portal.Settings");
  // Before `connect`, which looks the types of the slot up by their names.
  qRegisterMetaType<QDBusVariant>();
  qDBusRegisterMetaType<PortalSettings>();
  QDBusConnection bus = QDBusConnection::sessionBus();
  bus.connect({}, path, interface, QStringLiteral("SettingChanged"), this,
              SLOT(OnPortalSetting(QString, QString, QDBusVariant)));
  QDBusMessage question = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.portal.Desktop"), path, interface, QStringLiteral("ReadAll"));
  question << QStringList{kAppearance, kGnomeAccess, kGnome};
  // The windows do not wait for a portal that has to be started first.
  connect(new QDBusPendingCallWatcher(bus.asyncCall(question), this),
          &QDBusPendingCallWatcher::finished, this, &DesktopColors::OnPortalSettings);
}

void DesktopColors::OnPortalSettings(QDBusPendingCallWatcher* call) {
  call->deleteLater();
  const QDBusPendingReply<PortalSettings> reply = *call;
  if (reply.isError()) return;
  settings_.portal = reply.value();
  Apply();
}

}  // namespace

ColorScheme SchemeOf(const DesktopColorSettings& settings) {
  const auto portal = [&](QLatin1String group, const char* key) {
    return settings.portal.value(group).value(QLatin1String(key));
  };
  // The portal of another desktop than GNOME may pass on what is preset in GNOME's settings.
  const QVariant gnome_theme = portal(kGnome, "gtk-theme");
  const QString desktop_theme = gnome_theme.isValid() ? gnome_theme.toString() : settings.gtk_theme;
  const QString gtk = (settings.x_theme.isEmpty() ? desktop_theme : settings.x_theme).toLower();
  constexpr uint kPreferDark = 1;
  constexpr uint kPreferLight = 2;
  const uint preferred = portal(kAppearance, "color-scheme").toUInt();
  const bool dark_theme = IsDark(settings.theme) || gtk.endsWith(QLatin1String("dark")) ||
                          gtk.endsWith(QLatin1String("inverse"));
  const bool dark = preferred == kPreferDark || (preferred != kPreferLight && dark_theme);
  // Many themes are black on white; a theme that is white on black is one of high contrast.
  constexpr double kWhiteOnBlack = 20;
  const bool white_on_black =
      IsDark(settings.theme) && Contrast(settings.theme.color(QPalette::WindowText),
                                         settings.theme.color(QPalette::Window)) > kWhiteOnBlack;
  const bool high = white_on_black || gtk.startsWith(QLatin1String("highcontrast")) ||
                    portal(kAppearance, "contrast").toUInt() == 1 ||
                    portal(kGnomeAccess, "high-contrast").toBool();
  if (high) return dark ? ColorScheme::kHighContrastDark : ColorScheme::kHighContrastLight;
  return dark ? ColorScheme::kDark : ColorScheme::kLight;
}

void FollowDesktopColors(QObject* parent) { new DesktopColors(parent); }

}  // namespace quillan

#include "desktop_colors.moc"
