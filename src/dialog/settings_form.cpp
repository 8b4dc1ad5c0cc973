#include "dialog/settings_form.h"

#include <algorithm>
#include <exception>

#include <QKeyEvent>
#include <QShortcut>
#include <QTabBar>
#include <QVBoxLayout>

#include "dialog/new_addr_group_form.h"
#include "dialog/new_port_form.h"
#include "platform/program.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/twips.h"

namespace quillan {
namespace {

// The design size of the window's inside, and the row of buttons in it, in twips.
constexpr int kDesignWidth = 7735;
constexpr int kDesignHeight = 6475;
constexpr int kButtonWidth = 1095;
constexpr int kButtonHeight = 375;
constexpr std::array<int, 4> kButtonLefts = {2940, 4140, 5340, 6540};

// Qt counts the pages from 0.
constexpr int kRetentionPage = 2;
constexpr int kCollapsePage = 3;
constexpr int kServicePage = 4;

constexpr std::string_view kHelpServer = "Help Server";
constexpr std::string_view kHelpPath = "/Kelvora/Help/Admin/NetFlow.htm";

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
    : services_(services),
      ports_(
          {services.database, *this, services.messages, services.clock, services.locale},
          [this] { return NewPortForm::AddNewPort(services_.database, services_.messages, this); }),
      groups_({services.database, *this, services.messages, services.clock, services.locale},
              services.settings,
              [this](const Grid& grid) {
                return NewAddrGroupForm::AddNewAddressGroup(&grid, services_.database,
                                                            services_.messages, this);
              }),
      interfaces_({services.database, *this, services.messages, services.clock, services.locale}),
      tabs_(new QTabWidget(this)) {
  setObjectName(QStringLiteral("SettingsForm"));
  setWindowTitle(tr("Quillan Settings"));
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  tabs_->setObjectName(QStringLiteral("Tabs"));
  AddPages();
  AddButtons();
  ConnectHelp();
  OpenAtComfortableSize();
  connect(tabs_, &QTabWidget::currentChanged, this, &SettingsForm::OnTabSelected);
  Sync();
  OnTabSelected(tabs_->currentIndex());
}

// The pages show the lists, which go with the members, so they must go first.
SettingsForm::~SettingsForm() { delete tabs_; }

void SettingsForm::AddPages() {
  lists_[0] = AddListPage(ports_, "PortListFrame", "PortList", tr("Application && Service Ports"));
  lists_[1] = AddListPage(groups_, "IPGroupListFrame", "AddressGroupList", tr("IP Address Groups"));
  retention_ = new RetentionPage(services_.locale, tabs_);
  tabs_->addTab(retention_, tr("Data Retention"));
  collapse_ = new CollapsePage(services_.settings, services_.messages, tabs_);
  tabs_->addTab(collapse_, tr("Data Collapsing"));
  service_ = new ServicePage(tabs_);
  tabs_->addTab(service_, tr("NetFlow Service"));
  lists_[2] =
      AddListPage(interfaces_, "NetFlowSourceFrame", "InterfacesList", tr("NetFlow Sources"));
  for (const int page : {kRetentionPage, kCollapsePage}) {
    tabs_->setTabVisible(page, false);
    // The arrow keys pass over tabs that are disabled, not over those that are hidden. The page
    // itself stays enabled.
    tabs_->tabBar()->setTabEnabled(page, false);
  }
  tabs_->setCurrentIndex(kServicePage);
}

ListControl* SettingsForm::AddListPage(CheckableList& list, const char* page_name, const char* name,
                                       const QString& caption) {
  auto* page = new QWidget(tabs_);
  page->setObjectName(QLatin1String(page_name));
  QString title = caption;
  title.replace(QLatin1String("&&"), QLatin1String("&"));
  auto* control = new ListControl(list, services_.messages, QLatin1String(name), title, page);
  auto* layout = new QVBoxLayout(page);
  const int margin = ToPixels(kLayoutMargin);
  layout->setContentsMargins(margin, margin, margin, margin);
  layout->addWidget(control);
  tabs_->addTab(page, caption);
  return control;
}

void SettingsForm::AddButtons() {
  struct Description {
    const char* name;
    const char* caption;
  };
  constexpr std::array<Description, 4> kButtons = {
      {{"cmdOK", "OK"}, {"CmdApply", "Apply"}, {"cmdCancel", "Cancel"}, {"CmdHelp", "Help"}}};
  for (size_t i = 0; i < buttons_.size(); ++i) {
    buttons_[i] = new QPushButton(tr(kButtons[i].caption), this);
    buttons_[i]->setObjectName(QLatin1String(kButtons[i].name));
    buttons_[i]->setAutoDefault(false);
  }
  for (QPushButton* button : findChildren<QPushButton*>()) button->installEventFilter(this);
  connect(buttons_[0], &QPushButton::clicked, this, &SettingsForm::OnOk);
  connect(buttons_[1], &QPushButton::clicked, this, &SettingsForm::OnApply);
  connect(buttons_[2], &QPushButton::clicked, this, &SettingsForm::reject);
}

// Enter presses no button, also where the desktop's theme would have it so.
bool SettingsForm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) return true;
  }
  return QDialog::eventFilter(watched, event);
}

void SettingsForm::ConnectHelp() {
  QPushButton* help = buttons_[3];
  help->setEnabled(!HelpAddress().empty());
  if (!help->isEnabled()) {
    help->setToolTip(
        tr("Set the registry option \"Help Server\" of the program's Settings section "
           "to the host of the suite's web help server."));
  }
  connect(help, &QPushButton::clicked, this, [this] {
    Attempt([this] { OpenInBrowser(services_.desktop, services_.messages, HelpAddress()); });
  });
  auto* key = new QShortcut(QKeySequence(Qt::Key_F1), this);
  connect(key, &QShortcut::activated, this, [this] {
    if (services_.files.FileExists(services_.help_file)) {
      services_.desktop.OpenUrl(services_.help_file.string());
    }
  });
}

std::string SettingsForm::HelpAddress() const {
  const OptionValue option = services_.settings.RetrieveOption(kHelpServer, std::string());
  const std::string host = std::get<std::string>(option);
  if (host.empty()) return {};
  const bool has_scheme = host.find("://") != std::string::npos;
  return (has_scheme ? host : "http://" + host) + std::string(kHelpPath);
}

void SettingsForm::OpenAtComfortableSize() {
  const int margin = ToPixels(kLayoutMargin);
  const QSize design(ToPixels(kDesignWidth), ToPixels(kDesignHeight));
  int page = tabs_->tabBar()->sizeHint().width();
  for (const ListControl* list : lists_) {
    page = std::max(page, list->PreferredWidth() + 2 * margin);
  }
  constexpr int kTabFrame = 2;
  setMinimumSize(design);
  resize(std::max(design.width(), page + 2 * (margin + kTabFrame)), design.height());
}

void SettingsForm::resizeEvent(QResizeEvent* /*event*/) {
  const int inner_width = ToTwips(width());
  const int inner_height = ToTwips(height());
  const int tabs_height = inner_height - (kButtonHeight + 3 * kLayoutMargin);
  tabs_->setGeometry(
      ToPixels({kLayoutMargin, kLayoutMargin, inner_width - 2 * kLayoutMargin, tabs_height}));
  // The buttons keep their place below the tabs and from the right edge.
  for (size_t i = 0; i < buttons_.size(); ++i) {
    buttons_[i]->setGeometry(
        ToPixels({inner_width - (kDesignWidth - kButtonLefts[i]), tabs_height + 2 * kLayoutMargin,
                  kButtonWidth, kButtonHeight}));
  }
}

void SettingsForm::Sync() {
  Settings& settings = services_.settings;
  Attempt([&] { settings.RefreshDatabaseSettings(); });
  Attempt([&] { retention_->Load(settings); });
  Attempt([&] { collapse_->Load(settings); });
  Attempt([&] { service_->Load(settings); });
  for (ListControl* list : lists_) {
    Attempt([&] { list->Refresh(); });
  }
}

bool SettingsForm::SaveSettings() {
  Settings& settings = services_.settings;
  synced_lists_ = 0;
  for (ListControl* list : lists_) list->CommitEdit();
  retention_->Save(settings);
  if (!collapse_->ConfirmSave()) return false;
  collapse_->Save(settings);
  service_->Save(settings);
  for (ListControl* list : lists_) {
    list->Sync();
    ++synced_lists_;
  }
  settings.SaveDatabaseSettings();
  return true;
}

SettingsForm::SaveResult SettingsForm::TrySave() {
  try {
    return SaveSettings() ? SaveResult::kSaved : SaveResult::kCancelled;
  } catch (const std::exception& failure) {
    ShowDefaultPointer();
    services_.messages.Show(failure.what(), kDisplayName, MessageButtons::kOk,
                            MessageIcon::kExclamation);
  }
  // What was written must not be written again; the list that failed keeps its edits.
  for (size_t i = 0; i < synced_lists_; ++i) {
    Attempt([&] { lists_[i]->Refresh(); });
  }
  return SaveResult::kFailed;
}

void SettingsForm::OnOk() {
  if (TrySave() == SaveResult::kSaved) reject();
}

void SettingsForm::OnApply() {
  if (TrySave() != SaveResult::kFailed) Sync();
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
  const std::array<QWidget*, 6> first = {lists_[0],
                                         lists_[1],
                                         retention_->FirstControl(),
                                         collapse_->FirstControl(),
                                         service_->ListenPort(),
                                         lists_[2]};
  if (tab >= 0 && tab < static_cast<int>(first.size())) {
    first[static_cast<size_t>(tab)]->setFocus();
  }
}

}  // namespace quillan
