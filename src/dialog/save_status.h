#pragma once

#include <QAbstractButton>

namespace quillan {

/// One line beside the dialog's buttons: how many changes are not saved, what a save is doing, and
/// what became of it; before that, what is to be known about the connection. It takes what room is
/// left and elides. A click opens the review of what is not saved. Invisible while there is nothing
/// to say.
class SaveStatus final : public QAbstractButton {
  Q_OBJECT

 public:
  explicit SaveStatus(QWidget* parent);

  /// Something to know about the connection; shown until there is anything else to show.
  void ShowNote(const QString& text);
  /// The number of changes that are not saved. Another number replaces the outcome of the last
  /// save.
  void ShowPending(int count);
  /// What a save or load is doing; empty when it has ended.
  void ShowProgress(const QString& text);
  /// What became of the last save; empty for nothing.
  void ShowOutcome(const QString& text);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Refresh();
  QString Elided() const;

  QString note_;
  int pending_ = 0;
  QString progress_;
  QString outcome_;
};

}  // namespace quillan
