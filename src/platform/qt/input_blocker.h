#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace quillan {

/// Drops the user's keys and clicks while a long action runs, so that none of them is carried out
/// on what the action changes. Modal windows that the action opens, such as its questions, take
/// input as usual. What the user did meanwhile is dropped at the end. Of nested blockers the
/// outermost one counts.
class InputBlocker final : public QObject {
  Q_OBJECT

 public:
  /// `exempt`, if any, is the one widget of the blocked windows that takes input.
  explicit InputBlocker(QWidget* exempt = nullptr);
  ~InputBlocker() override;

  /// Repaints and handles every other event that waits, but drops input.
  static void ProcessEvents();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Takes(const QObject* watched, const QEvent& event) const;

  static inline bool active = false;

  const bool outermost_;
  QPointer<QWidget> exempt_;
  QPointer<QWidget> modal_;  // The modal window that was in use at the start.
};

}  // namespace quillan
