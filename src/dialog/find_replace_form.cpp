#include "dialog/find_replace_form.h"

#include <limits>

#include <QEvent>
#include <QGridLayout>
#include <QLocale>
#include <QShortcut>
#include <QVBoxLayout>

#include "dialog/lengths.h"
#include "dialog/page_parts.h"
#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

constexpr int kBoxWidth = 3600;  // Twips.

}  // namespace

FindReplaceForm::FindReplaceForm(CheckableList& list, GridView& table, QWidget* parent)
    : QDialog(parent),
      list_(list),
      table_(table),
      search_(list),
      find_(AddBox("FindText", tr("Find"))),
      replace_(AddBox("ReplaceText", tr("Replace with"))),
      match_case_(new QCheckBox(tr("Match case"), this)),
      result_(NewParagraph({}, this)),
      find_next_(AddButton("cmdFindNext", tr("Find Next"))),
      find_previous_(AddButton("cmdFindPrevious", tr("Find Previous"))),
      replace_next_(AddButton("cmdReplace", tr("Replace"))),
      replace_all_(AddButton("cmdReplaceAll", tr("Replace All"))) {
  setObjectName(QStringLiteral("FindReplaceForm"));
  setWindowTitle(tr("Find and Replace"));
  match_case_->setObjectName(QStringLiteral("MatchCase"));
  result_->setObjectName(QStringLiteral("FindResult"));
  find_next_->setDefault(true);
  LayOut();
  connect(find_next_, &QPushButton::clicked, this, &FindReplaceForm::FindNext);
  connect(find_previous_, &QPushButton::clicked, this, &FindReplaceForm::FindPrevious);
  connect(replace_next_, &QPushButton::clicked, this, &FindReplaceForm::Replace);
  connect(replace_all_, &QPushButton::clicked, this, &FindReplaceForm::ReplaceAll);
  const auto add_key = [this](const QKeySequence& key, auto action) {
    connect(new QShortcut(key, this), &QShortcut::activated, this, action);
  };
  add_key(Qt::Key_F3, &FindReplaceForm::FindNext);
  add_key(Qt::SHIFT | Qt::Key_F3, &FindReplaceForm::FindPrevious);
  // A text box that has the focus keeps its own.
  add_key(Qt::CTRL | Qt::Key_Z, [this] {
    list_.RevertSelected();
    result_->clear();
  });
  const auto enable = [this] {
    for (QPushButton* button : {find_next_, find_previous_, replace_next_, replace_all_}) {
      button->setEnabled(!find_->text().isEmpty());
    }
    result_->clear();
  };
  connect(find_, &QLineEdit::textChanged, this, enable);
  enable();
  table_.installEventFilter(this);
}

QLineEdit* FindReplaceForm::AddBox(const char* name, const QString& label) {
  auto* box = new QLineEdit(this);
  box->setObjectName(QLatin1String(name));
  box->setAccessibleName(label);
  box->setMinimumWidth(ToPixels(kBoxWidth));
  box->setMaxLength(std::numeric_limits<int>::max());
  return box;
}

QPushButton* FindReplaceForm::AddButton(const char* name, const QString& caption) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(QLatin1String(name));
  return button;
}

void FindReplaceForm::LayOut() {
  auto* close = AddButton("cmdClose", tr("Close"));
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  auto* buttons = new QVBoxLayout();
  for (QPushButton* button : {find_next_, find_previous_, replace_next_, replace_all_}) {
    buttons->addWidget(button);
  }
  buttons->addStretch();
  buttons->addWidget(close);
  auto* layout = new QGridLayout(this);
  layout->addWidget(new QLabel(find_->accessibleName(), this), 0, 0);
  layout->addWidget(find_, 0, 1);
  layout->addWidget(new QLabel(replace_->accessibleName(), this), 1, 0);
  layout->addWidget(replace_, 1, 1);
  layout->addWidget(match_case_, 2, 1);
  layout->addWidget(result_, 3, 0, 1, 2);
  layout->addLayout(buttons, 0, 2, 5, 1);
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(4, 1);
  QWidget* last = find_;
  for (QWidget* next : std::initializer_list<QWidget*>{
           replace_, match_case_, find_next_, find_previous_, replace_next_, replace_all_, close}) {
    setTabOrder(last, next);
    last = next;
  }
}

void FindReplaceForm::ShowWindow() {
  if (!isVisible()) {
    // In the corner over the list's buttons, where it covers few rows.
    adjustSize();
    const QWidget& list = *parentWidget();
    move(list.mapToGlobal(list.rect().bottomRight()) - rect().bottomRight());
    result_->clear();
  }
  show();
  raise();
  activateWindow();
  find_->setFocus();
  find_->selectAll();
}

void FindReplaceForm::reject() {
  QDialog::reject();
  table_.setFocus(Qt::OtherFocusReason);
}

bool FindReplaceForm::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &table_ && event->type() == QEvent::Hide && !event->spontaneous()) hide();
  return QDialog::eventFilter(watched, event);
}

bool FindReplaceForm::Begin() {
  if (find_->text().isEmpty()) {
    ShowWindow();
    return false;
  }
  table_.CommitEdit();
  search_.SetTexts(ToUtf8(find_->text()), ToUtf8(replace_->text()), match_case_->isChecked());
  return true;
}

void FindReplaceForm::FindNext() {
  if (Begin()) ShowFound(search_.FindNext(), false);
}

void FindReplaceForm::FindPrevious() {
  if (Begin()) ShowFound(search_.FindPrevious(), true);
}

void FindReplaceForm::Replace() {
  if (!Begin()) return;
  const SearchResult result = search_.ReplaceNext();
  if (result == SearchResult::kNotFound) return ShowFound(result, false);
  ShowReplaced(search_.TooLong().empty() ? 1 : 0, result == SearchResult::kFoundFromOtherEnd
                                                      ? tr("Continued at the top.")
                                                      : QString());
}

void FindReplaceForm::ReplaceAll() {
  if (!Begin()) return;
  const int rows = search_.ReplaceAll();
  if (rows == 0 && search_.TooLong().empty()) return ShowFound(SearchResult::kNotFound, false);
  ShowReplaced(rows, {});
}

void FindReplaceForm::ShowFound(SearchResult result, bool up) {
  // Nothing else would tell that the key did nothing.
  if (result == SearchResult::kNotFound && !isVisible()) ShowWindow();
  switch (result) {
    case SearchResult::kNotFound:
      return result_->setText(tr("Not found."));
    case SearchResult::kFound:
      return result_->clear();
    case SearchResult::kFoundFromOtherEnd:
      return result_->setText(up ? tr("Continued at the bottom.") : tr("Continued at the top."));
  }
}

void FindReplaceForm::ShowReplaced(int rows, const QString& remark) {
  QString text = rows == 1 ? tr("Replaced 1 description.")
                           : tr("Replaced %1 descriptions.").arg(QLocale().toString(rows));
  const QString too_long = ToQString(search_.TooLong());
  if (rows == 0) text = tr("Replaced nothing.");
  if (!too_long.isEmpty()) text += tr(" Others stay as they are: %1").arg(too_long);
  if (!remark.isEmpty()) text += QLatin1Char(' ') + remark;
  result_->setText(text);
}

}  // namespace quillan
