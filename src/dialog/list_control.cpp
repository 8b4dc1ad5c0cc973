#include "dialog/list_control.h"

#include <QHBoxLayout>
#include <QShortcut>
#include <QVBoxLayout>

#include "dialog/failures.h"
#include "dialog/lengths.h"
#include "dialog/page_parts.h"
#include "lists/refusal.h"
#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

constexpr int kButtonWidth = 2115;  // Twips.
constexpr int kButtonHeight = 375;

}  // namespace

ListControl::ListControl(CheckableList& list, const ListMenu::Services& services,
                         const QString& name, const QString& title, QWidget* parent)
    : QWidget(parent),
      list_(list),
      messages_(services.messages),
      filter_(new FilterBar(list, this)),
      table_(new GridView(list.Table(), this)) {
  setObjectName(name);
  setAccessibleName(title);
  table_->setAccessibleName(title);
  setFocusProxy(table_);
  table_->SetCheck([this](int column, std::string_view text) {
    return RefuseDescription(text, list_.MaxLength(column));
  });

  const int margin = ToPixels(kMargin);
  auto* layout = new QHBoxLayout(this);
  // The page's margin follows on the right; the two are rounded together.
  layout->setContentsMargins(0, 0, ToPixels(2 * kMargin) - margin, 0);
  layout->setSpacing(margin);
  AddErrorPanel();
  auto* rows = new QVBoxLayout();
  rows->setSpacing(0);
  rows->addWidget(filter_);
  if (list_.Description().filter == FilterKind::kGroups) AddStrip(*rows);
  rows->addWidget(table_);
  rows->addWidget(error_panel_);
  layout->addLayout(rows);
  auto* top = new QVBoxLayout();
  auto* bottom = new QVBoxLayout();
  for (const ListCommand& command : list_.Commands()) {
    (command.place == CommandPlace::kTop ? top : bottom)->addWidget(AddButton(command));
  }
  auto* column = new QVBoxLayout();
  for (auto* part : {top, bottom, column}) part->setSpacing(margin);
  column->addLayout(top);
  column->addStretch();
  column->addLayout(bottom);
  layout->addLayout(column);

  auto* find = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_F), this);
  connect(find, &QShortcut::activated, filter_, &FilterBar::Open);
  connect(filter_, &FilterBar::Closed, this, [this] { table_->setFocus(Qt::OtherFocusReason); });
  AddTableKey(Qt::CTRL | Qt::Key_Z, [this] { list_.RevertSelected(); });
  auto* menu = new ListMenu(list_, *table_, title, services, this);
  menu->AddTo(*error_panel_);
  if (list_.Description().editable_column != 0) AddSearchKeys();
  list_.OnRowCommands([this] { EnableRowCommands(); });
  EnableRowCommands();
}

ListControl::~ListControl() { list_.OnRowCommands({}); }

void ListControl::AddSearchKeys() {
  const auto add_key = [this](const QKeySequence& key, void (FindReplaceForm::*action)()) {
    connect(new QShortcut(key, this), &QShortcut::activated, this, [this, action] {
      if (search_ == nullptr) search_ = new FindReplaceForm(list_, *table_, this);
      (search_->*action)();
    });
  };
  add_key(Qt::CTRL | Qt::Key_H, &FindReplaceForm::ShowWindow);
  add_key(Qt::Key_F3, &FindReplaceForm::FindNext);
  add_key(Qt::SHIFT | Qt::Key_F3, &FindReplaceForm::FindPrevious);
}

void ListControl::AddStrip(QVBoxLayout& rows) {
  strip_ = new CoverageStrip(list_.Table(), *table_, this);
  strip_->hide();
  rows.addWidget(strip_);
  auto* key = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_M), this);
  connect(key, &QShortcut::activated, this, [this] { ShowStrip(!strip_shown_); });
}

void ListControl::ShowStrip(bool shown) {
  if (shown == strip_shown_ || strip_ == nullptr) return;
  strip_shown_ = shown;
  strip_->setVisible(shown && !table_->isHidden());
  emit StripToggled(shown);
}

void ListControl::UpdateStrip() {
  if (strip_ != nullptr) strip_->OnRowsChanged();
}

void ListControl::AddErrorPanel() {
  error_panel_ = new QFrame(this);
  error_panel_->setFrameShape(QFrame::StyledPanel);
  error_panel_->setAccessibleName(accessibleName());
  error_ = NewParagraph({}, error_panel_);
  error_->setObjectName(QStringLiteral("LoadError"));
  error_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  retry_ = new QPushButton(tr("Retry"), error_panel_);
  retry_->setObjectName(QStringLiteral("cmdRetry"));
  retry_->setAutoDefault(false);
  connect(retry_, &QPushButton::clicked, this, &ListControl::RetryRequested);
  auto* layout = new QVBoxLayout(error_panel_);
  layout->addWidget(NewHeading(tr("This list could not be read."), error_panel_));
  layout->addWidget(error_);
  layout->addWidget(retry_, 0, Qt::AlignLeft);
  layout->addStretch();
  error_panel_->hide();
}

void ListControl::ShowRows(const QString& error) {
  const bool had_focus = focusProxy()->hasFocus();
  error_->setText(error);
  retry_->setAccessibleDescription(error);
  table_->setVisible(error.isEmpty());
  if (strip_ != nullptr) strip_->setVisible(strip_shown_ && error.isEmpty());
  error_panel_->setVisible(!error.isEmpty());
  filter_->Update();
  setFocusProxy(error.isEmpty() ? static_cast<QWidget*>(table_) : retry_);
  if (had_focus) setFocus();
}

void ListControl::AddTableKey(const QKeySequence& key, const std::function<void()>& action) {
  auto* shortcut = new QShortcut(key, table_);
  shortcut->setContext(Qt::WidgetShortcut);
  connect(shortcut, &QShortcut::activated, this, action);
}

QPushButton* ListControl::AddButton(const ListCommand& command) {
  auto* button = new QPushButton(ToQString(command.caption), this);
  button->setObjectName(ToQString(command.name));
  button->setAutoDefault(false);
  button->setFixedSize(ToPixels(kButtonWidth), ToPixels(kButtonHeight));
  connect(button, &QPushButton::clicked, this, [this, run = command.run] { Run(run); });
  if (command.enabled == CommandEnabled::kOnDataRow) row_buttons_.push_back(button);
  if (command.key != CommandKey::kNone) {
    const auto key = command.key == CommandKey::kInsert ? Qt::Key_Insert : Qt::Key_Delete;
    AddTableKey(key, [button] { button->click(); });
  }
  return button;
}

void ListControl::Run(const std::function<void()>& command) {
  RunGuarded(messages_, [&] {
    CommitEdit();
    command();
  });
}

void ListControl::EnableRowCommands() {
  const bool enable = list_.RowCommandsEnabled();
  for (QPushButton* button : row_buttons_) {
    // A button that is disabled gives the focus to its list; Qt would pass it on to the next
    // button.
    if (!enable && window()->focusWidget() == button) table_->setFocus(Qt::MouseFocusReason);
    button->setEnabled(enable);
  }
}

QSize ListControl::sizeHint() const {
  return {table_->ColumnsWidth() + ToPixels(kButtonWidth + 2 * kMargin),
          minimumSizeHint().height()};
}

}  // namespace quillan
