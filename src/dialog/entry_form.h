#pragma once

#include <optional>
#include <vector>

#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

#include "lists/refusal.h"
#include "platform/message_box.h"

namespace quillan {

/// A small modal dialog that asks for a new entry: text boxes with their labels, OK and Cancel.
/// Enter moves from box to box and presses OK in the last one; Esc cancels.
class EntryForm : public QDialog {
  Q_OBJECT

 protected:
  EntryForm(const char* name, const QString& caption, MessageBox& messages, QWidget* parent);

  /// Adds a text box below the others.
  QLineEdit* AddBox(const char* name, const QString& label);
  /// Adds a text below the others, which is shown while it is not empty.
  QLabel* AddNote(const char* name);
  void ShowNote(QLabel* note, const QString& text);
  /// Adds the buttons; to be called after the last box.
  void AddButtons();

  /// Why OK may not accept the entry; called for each press of OK.
  virtual std::optional<Refusal> Refuse() = 0;

 private:
  void OnOk();

  MessageBox& messages_;
  QFormLayout* layout_;
  std::vector<QLineEdit*> boxes_;
};

}  // namespace quillan
