#include "dialog/filter_bar.h"

#include <algorithm>

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLocale>

#include "dialog/lengths.h"
#include "platform/qt/qt_text.h"

namespace quillan {

FilterBar::FilterBar(CheckableList& list, QWidget* parent)
    : QWidget(parent), list_(list), text_(new QLineEdit(this)), result_(new QLabel(this)) {
  setObjectName(QStringLiteral("FilterBar"));
  setAccessibleName(tr("Filter"));
  text_->setObjectName(QStringLiteral("FilterText"));
  text_->setAccessibleName(tr("Filter"));
  text_->setPlaceholderText(list.Description().filter == FilterKind::kGroups
                                ? tr("Words or an IP address")
                                : tr("Words that a row must contain"));
  text_->setClearButtonEnabled(true);
  text_->findChild<QAbstractButton*>()->setAccessibleName(tr("Clear the filter"));
  result_->setObjectName(QStringLiteral("FilterResult"));
  result_->setTextFormat(Qt::PlainText);
  result_->setWordWrap(true);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, ToPixels(kMargin));
  layout->addWidget(text_, 1);
  layout->addWidget(result_, 1);
  connect(text_, &QLineEdit::textChanged, this, &FilterBar::Apply);
  connect(text_, &QLineEdit::returnPressed, this, [this] { ShowResult(true); });
  hide();
}

void FilterBar::Open() {
  show();
  ShowResult(false);
  text_->setFocus();
  text_->selectAll();
}

void FilterBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
  // Esc closes the bar, not the window.
  event->accept();
  text_->clear();
  hide();
  emit Closed();
}

void FilterBar::Apply() {
  const std::string typed = ToUtf8(text_->text().trimmed());
  if (typed.empty()) {
    list_.Table().SetFilter({});
  } else {
    list_.Table().SetFilter(
        [&grid = list_.Table(), filter = ListFilter(typed, list_.Description().filter)](int row) {
          return filter.Matches(grid, row);
        });
  }
  ShowResult(false);
}

void FilterBar::Update() {
  if (isVisible()) ShowResult(false);
}

void FilterBar::ShowResult(bool ask_database) {
  const Grid& grid = list_.Table();
  const std::string typed = ToUtf8(text_->text().trimmed());
  const ListFilter filter(typed, list_.Description().filter);
  const QLocale locale;
  QString result = tr("%1 of %2")
                       .arg(locale.toString(grid.ShownRows()),
                            locale.toString(std::max(grid.Rows() - Grid::kFixedRows, 0)));
  const std::string note = list_.FilterNote(filter, ask_database);
  if (!note.empty()) result += QStringLiteral(". ") + ToQString(note);
  result_->setText(result);
  text_->setAccessibleDescription(typed.empty() ? QString() : result);
  // The bar as a whole would be given the height of one line.
  result_->setMinimumHeight(result_->heightForWidth(result_->width()));
}

}  // namespace quillan
