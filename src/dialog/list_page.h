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
  };
  ListPage(const Names& names, std::unique_ptr<CheckableList> list, MessageBox& messages,
           QWidget* parent);
  ~ListPage() override;

  QWidget* FirstControl() const override { return control_; }
  int PendingCount() const override;
  void LoadRows() override { list_->Refresh(); }
  void CommitEdit() override { control_->CommitEdit(); }
  void SaveRows() override { list_->Sync(); }

 private:
  std::unique_ptr<CheckableList> list_;
  ListControl* control_;
};

}  // namespace quillan
