#pragma once

#include <cstdint>
#include <functional>

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QString>

struct xcb_connection_t;

namespace quillan {

/// The theme that `property` names, the settings of an X settings manager as they stand on its
/// window; empty if it names none or does not have their format.
QString ThemeInXSettings(const QByteArray& property);

/// What the settings manager of an X display says (that of Xfce, MATE and others, or xsettingsd).
/// Where there is no X, or no manager at the start, it says nothing.
class XSettings final : public QAbstractNativeEventFilter {
 public:
  /// `changed` is called when the manager has changed its settings.
  explicit XSettings(std::function<void()> changed);

  /// The name of the theme, "Adwaita-dark"; empty if there is none.
  QString Theme() const;

  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

 private:
  std::uint32_t Atom(const char* name) const;

  std::function<void()> changed_;
  xcb_connection_t* connection_ = nullptr;  // Null without X.
  std::uint32_t property_ = 0;
  std::uint32_t window_ = 0;  // That of the manager; 0 without one.
};

}  // namespace quillan
