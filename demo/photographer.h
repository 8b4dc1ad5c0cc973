#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include <QKeySequence>
#include <QMessageBox>
#include <QString>
#include <QTabWidget>
#include <QWidget>

#include "dialog/settings_form.h"
#include "platform/qt/grid_view.h"

namespace quillan {

/// Uses the settings dialog as a user does, and writes pictures of what is on the screen.
class Photographer {
 public:
  /// `form` outlives the object; the pictures are written to `folder`, which must exist.
  Photographer(SettingsForm& form, std::filesystem::path folder)
      : form_(form), folder_(std::move(folder)) {}

  /// False when a picture could not be taken or written.
  bool Good() const { return good_; }
  SettingsForm& Form() { return form_; }

  void Take(QWidget& window, const QString& name);
  /// Takes windows as they lie on the screen, the later ones above.
  void TakeTogether(const std::vector<QWidget*>& windows, const QString& name);
  /// Takes the modal window that `action` opens, after `prepare` if any, and presses one of its
  /// buttons, or closes it if none is named.
  void TakeModal(const QString& name, const char* button, const std::function<void()>& action,
                 const std::function<void(QWidget&)>& prepare = {});
  /// Takes the message that `action` shows and answers it, by default with the most cautious
  /// answer.
  void TakeMessage(const QString& name, const std::function<void()>& action,
                   QMessageBox::StandardButton answer = QMessageBox::NoButton,
                   const std::function<void()>& before_the_next = {});

  QTabWidget& Tabs() { return *form_.findChild<QTabWidget*>(QStringLiteral("Tabs")); }
  /// Shows a page and returns its list.
  GridView& ShowList(int tab);
  /// Toggles the check boxes of data rows in the list of a page.
  void Toggle(int tab, int first, int last);
  /// Triggers an entry of the current list's menu.
  void Choose(const char* action);
  /// Does what a key of the current page does.
  void PressShortcut(const QKeySequence& key);

 private:
  void Save(const QPixmap& picture, const QString& name);
  void Complain(const char* problem, const QString& name);

  SettingsForm& form_;
  std::filesystem::path folder_;
  bool good_ = true;
};

void Type(const char* box, const QString& text, QWidget& window);
void Press(const char* button, QWidget& window);

}  // namespace quillan
