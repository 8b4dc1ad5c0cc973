#include "dialog/settings_form.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QShortcut>
#include <QTabBar>
#include <QVBoxLayout>

#include "dialog/failures.h"
#include "dialog/lengths.h"
#include "dialog/settings_pages.h"
#include "platform/program.h"
#include "platform/qt/input_blocker.h"

namespace quillan {
namespace {

// The inside of the window at its design size, and the buttons in it, in twips.
constexpr int kDesignWidth = 7735;
constexpr int kDesignHeight = 6475;
constexpr int kButtonWidth = 1095;
constexpr int kButtonHeight = 375;

}  // namespace

SettingsForm::SettingsForm(const SettingsFormServices& services)
    : services_(services),
      tabs_(new QTabWidget(this)),
      pages_(CreateSettingsPages({.settings = services.settings,
                                  .database = services.database,
                                  .host = *this,
                                  .messages = services.messages,
                                  .clock = services.clock,
                                  .locale = services.locale},
                                 this),
             services.settings, services.messages),
      help_(new HelpButton({.settings = services.settings,
                            .files = services.files,
                            .desktop = services.desktop,
                            .messages = services.messages,
                            .help_file = services.help_file},
                           this)) {
  setObjectName(QStringLiteral("SettingsForm"));
  setWindowTitle(tr("Quillan Settings"));
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  tabs_->setObjectName(QStringLiteral("Tabs"));
  for (SettingsPage* page : pages_.Pages()) AddPage(page);
  AddButtons();
  AddTabKey(Qt::CTRL | Qt::Key_Tab, 1);
  AddTabKey(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, -1);
  OpenAtComfortableSize();
  connect(tabs_, &QTabWidget::currentChanged, this, &SettingsForm::OnTabSelected);
  Sync();
  OnTabSelected(tabs_->currentIndex());
}

// The pages must go while the window that they call still exists.
SettingsForm::~SettingsForm() { delete tabs_; }

void SettingsForm::AddPage(SettingsPage* page) {
  const int tab = tabs_->addTab(page, page->Caption());
  tabs_->setTabVisible(tab, page->Reachable());
  // The arrow keys pass over tabs that are disabled, not over those that are hidden. The page
  // itself stays enabled.
  tabs_->tabBar()->setTabEnabled(tab, page->Reachable());
  if (page->OpensFirst()) tabs_->setCurrentIndex(tab);
  connect(page, &SettingsPage::NeedsAttention, this,
          [this, page] { tabs_->setCurrentWidget(page); });
}

// Changes the page wherever in the window the focus is.
void SettingsForm::AddTabKey(const QKeySequence& key, int step) {
  connect(new QShortcut(key, this), &QShortcut::activated, this, [this, step] {
    int tab = tabs_->currentIndex();
    do {
      tab = (tab + step + tabs_->count()) % tabs_->count();
    } while (!tabs_->isTabVisible(tab));
    tabs_->setCurrentIndex(tab);
  });
}

void SettingsForm::AddButtons() {
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
  add_new("cmdCancel", tr("Cancel"), &SettingsForm::Close);
  add(help_);
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
  help_->Refresh();
  pages_.Load();
}

SaveResult SettingsForm::Save() {
  const InputBlocker blocker;
  return pages_.Save();
}

void SettingsForm::OnOk() {
  RunGuarded(services_.messages, [this] {
    if (Save() == SaveResult::kDone) Close();
  });
}

void SettingsForm::OnApply() {
  RunGuarded(services_.messages, [this] {
    const InputBlocker blocker;
    if (Save() != SaveResult::kFailed) Sync();
  });
}

void SettingsForm::reject() {
  const int pending = pages_.PendingCount();
  if (pending > 0) {
    const std::string changes =
        pending == 1 ? "A change has" : std::to_string(pending) + " changes have";
    const MessageAnswer answer =
        services_.messages.Show(changes + " not been saved.\r\nClose the window without saving?",
                                kDisplayName, MessageButtons::kYesNo, MessageIcon::kQuestion);
    if (answer != MessageAnswer::kYes) return;
  }
  Close();
}

void SettingsForm::Close() {
  QDialog::reject();
  const std::string& style = services_.settings.GUIStyle();
  if (style != "ADVANCED" && style != "MINIMAL") services_.end_program();
}

void SettingsForm::OnTabSelected(int tab) {
  if (auto* page = qobject_cast<SettingsPage*>(tabs_->widget(tab))) {
    page->FirstControl()->setFocus();
  }
}

}  // namespace quillan
