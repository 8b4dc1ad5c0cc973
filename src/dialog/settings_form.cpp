#include "dialog/settings_form.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>

#include "dialog/failures.h"
#include "dialog/lengths.h"
#include "dialog/list_control.h"
#include "dialog/review_form.h"
#include "dialog/settings_pages.h"
#include "platform/program.h"
#include "platform/qt/qt_text.h"

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
      tabs_(new PageTabs(this)),
      save_bar_(new SaveBar({.database = services.database,
                             .messages = services.messages,
                             .clock = services.clock,
                             .locale = services.locale},
                            *this)),
      exporter_(services.printers, services.messages, save_bar_->Progress(), *this),
      pages_(CreateSettingsPages({.settings = services.settings,
                                  .database = services.database,
                                  .host = save_bar_->Progress(),
                                  .exporter = exporter_,
                                  .messages = services.messages,
                                  .clock = services.clock,
                                  .locale = services.locale},
                                 this),
             {.settings = services.settings,
              .database = services.database,
              .messages = services.messages,
              .progress = save_bar_->Progress(),
              .ask_about_conflicts =
                  [this](const auto& conflicts) { return AskAboutConflicts(conflicts, this); }}),
      view_(services.registry) {
  setObjectName(QStringLiteral("SettingsForm"));
  setWindowTitle(tr("Quillan Settings"));
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  for (SettingsPage* page : pages_.Pages()) {
    tabs_->AddPage(page);
    connect(page, &SettingsPage::PendingChanged, this,
            [this] { save_bar_->ShowPending(pages_.PendingCount()); });
    connect(page, &SettingsPage::RetryRequested, this,
            [this, page] { RunGuarded(services_.messages, [&] { pages_.Reload(*page); }); });
  }
  AddButtons();
  // These work wherever in the window the focus is.
  const auto add_key = [this](const QKeySequence& key, auto action) {
    connect(new QShortcut(key, this), &QShortcut::activated, this, action);
  };
  add_key(Qt::CTRL | Qt::Key_Tab, [this] { tabs_->SelectNext(1); });
  add_key(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, [this] { tabs_->SelectNext(-1); });
  add_key(Qt::CTRL | Qt::Key_R, &SettingsForm::Review);
  connect(save_bar_, &SaveBar::ReviewRequested, this, &SettingsForm::Review);
  RestoreLists();
  OpenAtComfortableSize();
  Sync();
  save_bar_->ShowNote(ToQString(services_.database.ConnectionNote()));
  tabs_->FocusPage();
}

// The pages must go while the window that they call still exists.
SettingsForm::~SettingsForm() { delete tabs_; }

void SettingsForm::AddButtons() {
  const int margin = ToPixels(kMargin);
  auto* buttons = new QHBoxLayout();
  buttons->setSpacing(margin);
  buttons->addWidget(save_bar_, 1);
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
  help_ = new HelpButton({.settings = services_.settings,
                          .files = services_.files,
                          .desktop = services_.desktop,
                          .messages = services_.messages,
                          .help_file = services_.help_file},
                         this);
  add(help_);
  QWidget* last = help_;
  for (auto* button : save_bar_->findChildren<QAbstractButton*>()) {
    setTabOrder(last, button);
    last = button;
  }
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
  QSize size(sizeHint().width(), design.height());
  if (const auto remembered = view_.WindowSize()) {
    const QSize on_screen =
        screen()->availableSize() -
        QSize(0, style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this));
    size =
        QSize(ToPixels(remembered->width()), ToPixels(remembered->height())).boundedTo(on_screen);
  }
  opened_size_ = size.expandedTo(design);
  resize(opened_size_);
}

void SettingsForm::RestoreLists() {
  for (ListControl* list : tabs_->findChildren<ListControl*>()) {
    const std::string name = ToUtf8(list->objectName());
    std::map<int, int> widths;
    for (const auto& [column, twips] : view_.ColumnWidths(name)) widths[column] = ToPixels(twips);
    GridView& table = list->Table();
    table.SetDrawnWidths(widths);
    connect(&table, &GridView::ColumnDrawn, this, [this, name, &table] {
      RememberedView::Widths drawn;
      for (const auto& [column, pixels] : table.DrawnWidths()) drawn[column] = ToTwips(pixels);
      view_.SetColumnWidths(name, drawn);
    });
    if (const auto shown = view_.StripShown()) list->ShowStrip(*shown);
    connect(list, &ListControl::StripToggled, this,
            [this](bool shown) { view_.SetStripShown(shown); });
  }
}

void SettingsForm::RememberView() {
  const QSize now = isMaximized() || isFullScreen() ? normalGeometry().size() : size();
  if (now != opened_size_) view_.SetWindowSize({ToTwips(now.width()), ToTwips(now.height())});
  view_.Write();
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
  const SaveResult result = pages_.Save();
  save_bar_->ShowReport(pages_.Report());
  return result;
}

void SettingsForm::Review() {
  RunGuarded(services_.messages, [this] {
    for (SettingsPage* page : pages_.Pages()) page->CommitEdit();
    if (pages_.PendingCount() == 0) return;
    ReviewForm form(pages_.Pages(), this);
    if (form.exec() != Accepted) return;
    const auto& [page, row] = form.Target();
    tabs_->setCurrentWidget(page);
    page->FirstControl()->setFocus();
    page->GoTo(row);
  });
}

void SettingsForm::OnOk() {
  RunGuarded(services_.messages, [this] {
    if (Save() == SaveResult::kDone) Close();
  });
}

void SettingsForm::OnApply() {
  RunGuarded(services_.messages, [this] {
    const SaveProgress::Work work(save_bar_->Progress());
    if (Save() == SaveResult::kFailed) return;
    Sync();
    save_bar_->ShowReport(pages_.Report());
  });
}

void SettingsForm::reject() {
  for (SettingsPage* page : pages_.Pages()) page->CommitEdit();
  const int pending = pages_.PendingCount();
  if (pending > 0) {
    const MessageAnswer answer = services_.messages.Show(
        std::to_string(pending) + (pending == 1 ? " change has" : " changes have") +
            " not been saved.\r\nClose the window without saving?",
        kDisplayName, MessageButtons::kYesNo, MessageIcon::kQuestion);
    if (answer != MessageAnswer::kYes) return;
  }
  Close();
}

void SettingsForm::Close() {
  RememberView();
  QDialog::reject();
  const std::string& style = services_.settings.GUIStyle();
  if (style != "ADVANCED" && style != "MINIMAL") services_.end_program();
}

}  // namespace quillan
