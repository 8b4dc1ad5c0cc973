#pragma once

#include <string>

#include <QCheckBox>
#include <QLabel>

#include "dialog/table_dialog.h"
#include "lists/editable_list.h"
#include "platform/message_box.h"
#include "platform/text/user_locale.h"

namespace quillan {

/// Shows what an import would do to a list, line by line, before anything is changed. Accepting it
/// means that the plan is to be applied.
class ImportPreviewForm final : public TableDialog {
  Q_OBJECT

 public:
  struct Services {
    MessageBox& messages;
    const text::UserLocale& locale;
  };
  /// `bytes` are those of a file (see ReadImport), `source` is what the user knows it by. `list`
  /// and what `services` names outlive the window.
  ImportPreviewForm(EditableList& list, std::string bytes, QString source, const Services& services,
                    QWidget* parent);

  /// The plan that is shown. It has an error, and nothing to show, if the file cannot be used.
  const ImportPlan& Plan() const { return plan_; }

 private:
  void AddBoxes();
  void MakePlan();
  void ShowPlan();
  QString Number(int number) const;
  QString Summary() const;
  QStringList Describe(const ImportLine& line) const;
  QString DescribeChange(const ImportLine& line) const;
  QStringList DescribeRow(int row, const QString& verdict, const QString& reason) const;

  EditableList& list_;
  std::string bytes_;
  QString source_;
  Services services_;
  ImportPlan plan_;
  QLabel* summary_;
  QCheckBox* replace_;
  QCheckBox* refused_only_;
  QPushButton* add_;
};

}  // namespace quillan
