#pragma once

#include <functional>
#include <vector>

#include <QDialog>
#include <QFormLayout>
#include <QLineEdit>

namespace quillan {

/// The common shape of the small dialogs that ask for a new entry: text boxes with their labels, OK
/// and Cancel. Enter moves from box to box and presses OK in the last one; Esc cancels.
class EntryForm {
 public:
  /// Lays out `dialog`; `on_ok` is called for OK and keeps the dialog open unless it accepts it.
  EntryForm(QDialog& dialog, const QString& caption, std::function<void()> on_ok);

  /// Adds a text box below the others.
  QLineEdit* AddBox(const QString& name, const QString& label);
  /// Adds the buttons; to be called after the last box.
  void AddButtons();

 private:
  QDialog& dialog_;
  std::function<void()> on_ok_;
  QFormLayout* layout_;
  std::vector<QLineEdit*> boxes_;
};

}  // namespace quillan
