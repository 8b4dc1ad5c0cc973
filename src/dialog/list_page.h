#pragma once

#include <memory>

#include "dialog/list_control.h"
#include "dialog/settings_page.h"

namespace quillan {

/// A page that shows one list.
class ListPage final : public SettingsPage {
  Q_OBJECT

 public:
  struct Names {
    const char* page;
    const char* list;
    QString caption;
    QString rows;  ///< What the rows are called: "ports".
  };
  ListPage(const Names& names, std::unique_ptr<CheckableList> list,
           const ListMenu::Services& services, QWidget* parent);
  ~ListPage() override;

  QWidget* FirstControl() const override { return control_; }
  CheckableList* List() const override { return list_.get(); }
  QString RowsName() const override { return rows_name_; }
  void CommitEdit() override { control_->CommitEdit(); }
  void ShowRows(const QString& error) override { control_->ShowRows(error); }

  int PendingCount() const override { return list_->PendingCount(); }
  std::vector<PendingRow> Pending() const override { return list_->Pending(); }
  void Revert(const std::vector<int>& rows) override { list_->Revert(rows); }
  void GoTo(int row) override;
  QString RowNote(int row) const override;

 private:
  QString rows_name_;
  std::unique_ptr<CheckableList> list_;
  ListControl* control_;
};

}  // namespace quillan
