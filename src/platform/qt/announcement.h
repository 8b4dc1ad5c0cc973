#pragma once

#include <QTimer>
#include <QWidget>

namespace quillan {

/// Has screen readers speak a text, wherever the focus is. Nothing of it is seen.
class Announcement final : public QWidget {
  Q_OBJECT

 public:
  explicit Announcement(QWidget* parent);

  /// Speaks `text` unless another one follows at once; nothing if it is empty.
  void Say(const QString& text);

 private:
  void Speak();

  QTimer delay_;
};

}  // namespace quillan
