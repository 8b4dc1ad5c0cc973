#include "dialog/settings_form.h"

#include <algorithm>
#include <exception>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QTabBar>
#include <QVBoxLayout>

#include "dialog/failures.h"
#include "dialog/help_button.h"
#include "dialog/lengths.h"
#include "dialog/settings_pages.h"
#include "platform/program.h"

namespace quillan {
namespace {

// The inside of the window at its design size, and the buttons in it, in twips.
constexpr int kDesignWidth = 7735;
constexpr int kDesignHeight = 6475;
constexpr int kButtonWidth = 1095;
constexpr int kButtonHeight = 375;

// Runs one step of a sequence in which a failing step is skipped.
template <typename Step>
void Attempt(Step step) {
  try {
    step();
  } catch (const std::exception&) {
    // The steps that follow do not depend on this one.
  }
}

}  // namespace

SettingsForm::SettingsForm(const SettingsFormServices& services)
    : services_(services), tabs_(new QTabWidget(this)) {
  setObjectName(QStringLiteral("SettingsForm"));
  setWindowTitle(tr("Quillan Settings"));
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  tabs_->setObjectName(QStringLiteral("Tabs"));
  const PageServices for_pages{.settings = services.settings,
                               .database = services.database,
                               .host = *this,
                               .messages = services.messages,
                               .clock = services.clock,
                               .locale = services.locale};
  for (SettingsPage* page : CreateSettingsPages(for_pages, this)) AddPage(page);
  AddControls();
  OpenAtComfortableSize();
  connect(tabs_, &QTabWidget::currentChanged, this, &SettingsForm::OnTabSelected);
  Sync();
  OnTabSelected(tabs_->currentIndex());
}

// The pages must go while the window that they call still exists.
SettingsForm::~SettingsForm() { delete tabs_; }

void SettingsForm::AddPage(SettingsPage* page) {
  pages_.push_back(page);
  const int tab = tabs_->addTab(page, page->Caption());
  tabs_->setTabVisible(tab, page->Reachable());
  // The arrow keys pass over tabs that are disabled, not over those that are hidden. The page
  // itself stays enabled.
  tabs_->tabBar()->setTabEnabled(tab, page->Reachable());
  if (page->OpensFirst()) tabs_->setCurrentIndex(tab);
}

void SettingsForm::AddControls() {
  const int margin = ToPixels(kMargin);
  auto* buttons = new QHBoxLayout();
  buttons->setSpacing(margin);
  buttons->addStretch();
  const auto add = [&](QPushButton* button) {
    button->setAutoDefault(false);
    button->setFixedSize(ToPixels(kButtonWidth), ToPixels(kButtonHeight));
    buttons->addWidget(button);
  };
  const auto add_new = [&](const char* name, const QString& caption, auto on_click) {
    auto* button = new QPushButton(caption, this);
    button->setObjectName(QLatin1String(name));
    connect(button, &QPushButton::clicked, this, on_click);
    add(button);
  };
  add_new("cmdOK", tr("OK"), &SettingsForm::OnOk);
  add_new("CmdApply", tr("Apply"), &SettingsForm::OnApply);
  add_new("cmdCancel", tr("Cancel"), &SettingsForm::reject);
  add(new HelpButton({.settings = services_.settings,
                      .files = services_.files,
                      .desktop = services_.desktop,
                      .messages = services_.messages,
                      .help_file = services_.help_file},
                     this));
  for (QPushButton* button : findChildren<QPushButton*>()) button->installEventFilter(this);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(margin, margin, margin, margin);
  layout->setSpacing(margin);
  layout->addWidget(tabs_);
  layout->addLayout(buttons);
}

void SettingsForm::OpenAtComfortableSize() {
  const QSize design(ToPixels(kDesignWidth), ToPixels(kDesignHeight));
  setMinimumSize(design);
  resize(std::max(design.width(), sizeHint().width()), design.height());
}

// Enter presses no button, also where the desktop's theme would have it so.
bool SettingsForm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) return true;
  }
  return QDialog::eventFilter(watched, event);
}

void SettingsForm::Sync() {
  Attempt([&] { services_.settings.RefreshDatabaseSettings(); });
  for (SettingsPage* page : pages_) {
    Attempt([&] { page->LoadOptions(); });
  }
  for (SettingsPage* page : pages_) {
    Attempt([&] { page->LoadRows(); });
  }
}

SaveResult SettingsForm::SaveSettings() {
  for (SettingsPage* page : pages_) page->CommitEdit();
  const SaveResult options = SaveOptions();
  return options == SaveResult::kDone ? SaveRows() : options;
}

SaveResult SettingsForm::SaveOptions() {
  for (SettingsPage* page : pages_) {
    const SaveResult result = page->SaveOptions();
    // What the user is to correct is on this page.
    if (result == SaveResult::kFailed) tabs_->setCurrentWidget(page);
    if (result != SaveResult::kDone) return result;
  }
  return SaveResult::kDone;
}

SaveResult SettingsForm::SaveRows() {
  auto page = pages_.begin();
  try {
    for (; page != pages_.end(); ++page) (*page)->SaveRows();
    services_.settings.SaveDatabaseSettings();
    return SaveResult::kDone;
  } catch (const std::exception& failure) {
    ShowDefaultPointer();
    ShowFailure(services_.messages, failure.what());
  }
  // What was written must not be written again; the page that failed keeps its edits.
  std::for_each(pages_.begin(), page,
                [](SettingsPage* saved) { Attempt([&] { saved->LoadRows(); }); });
  return SaveResult::kFailed;
}

void SettingsForm::OnOk() {
  if (SaveSettings() == SaveResult::kDone) reject();
}

void SettingsForm::OnApply() {
  if (SaveSettings() != SaveResult::kFailed) Sync();
}

void SettingsForm::reject() {
  QDialog::reject();
  Unload();
}

void SettingsForm::Unload() {
  const std::string& style = services_.settings.GUIStyle();
  if (style != "ADVANCED" && style != "MINIMAL") services_.end_program();
}

void SettingsForm::OnTabSelected(int tab) {
  if (auto* page = qobject_cast<SettingsPage*>(tabs_->widget(tab))) {
    page->FirstControl()->setFocus();
  }
}

}  // namespace quillan
