#include "platform/qt/announcement.h"

#include <QAccessibleWidget>

namespace quillan {
namespace {

constexpr int kDelayMilliseconds = 300;

// A notification is spoken when it is reported to be shown.
QAccessibleInterface* Describe(const QString& key, QObject* object) {
  if (key != QLatin1String(Announcement::staticMetaObject.className())) return nullptr;
  return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Notification);
}

}  // namespace

Announcement::Announcement(QWidget* parent) : QWidget(parent) {
  QAccessible::installFactory(Describe);
  hide();
  delay_.setSingleShot(true);
  delay_.setInterval(kDelayMilliseconds);
  connect(&delay_, &QTimer::timeout, this, &Announcement::Speak);
}

void Announcement::Say(const QString& text) {
  setAccessibleName(text);
  delay_.start();
}

void Announcement::Speak() {
  if (accessibleName().isEmpty() || !QAccessible::isActive()) return;
  QAccessibleEvent shown(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&shown);
}

}  // namespace quillan
