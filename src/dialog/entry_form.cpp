#include "dialog/entry_form.h"

#include <limits>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>

#include "dialog/failures.h"
#include "dialog/lengths.h"
#include "dialog/page_parts.h"

namespace quillan {
namespace {

constexpr int kBoxWidth = 3900;  // Twips.

// Enter presses the button that has the focus, and no other.
class EntryButton final : public QPushButton {
 public:
  EntryButton(const char* name, const QString& caption, QWidget* parent)
      : QPushButton(caption, parent) {
    setObjectName(QLatin1String(name));
    setAutoDefault(false);
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
      click();
    } else {
      QPushButton::keyPressEvent(event);
    }
  }
};

}  // namespace

EntryForm::EntryForm(const char* name, const QString& caption, MessageBox& messages,
                     QWidget* parent)
    : QDialog(parent), messages_(messages), layout_(new QFormLayout(this)) {
  setObjectName(QLatin1String(name));
  setWindowTitle(caption);
  setModal(true);
  layout_->setSizeConstraint(QLayout::SetFixedSize);
}

QLineEdit* EntryForm::AddBox(const char* name, const QString& label) {
  auto* box = new QLineEdit(this);
  box->setObjectName(QLatin1String(name));
  box->setAccessibleName(label);
  box->setMinimumWidth(ToPixels(kBoxWidth));
  box->setMaxLength(std::numeric_limits<int>::max());
  layout_->addRow(label, box);
  boxes_.push_back(box);
  return box;
}

QLabel* EntryForm::AddNote(const char* name) {
  auto* note = NewParagraph({}, this);
  note->setObjectName(QLatin1String(name));
  layout_->addRow(note);
  ShowNote(note, {});
  return note;
}

void EntryForm::ShowNote(QLabel* note, const QString& text) {
  note->setText(text);
  layout_->setRowVisible(note, !text.isEmpty());
}

void EntryForm::AddButtons() {
  for (size_t i = 0; i + 1 < boxes_.size(); ++i) {
    connect(boxes_[i], &QLineEdit::returnPressed, boxes_[i + 1], qOverload<>(&QWidget::setFocus));
  }
  connect(boxes_.back(), &QLineEdit::returnPressed, this, &EntryForm::OnOk);
  auto* row = new QHBoxLayout();
  row->addStretch();
  auto* ok = new EntryButton("cmdOK", tr("OK"), this);
  auto* cancel = new EntryButton("cmdCancel", tr("Cancel"), this);
  row->addWidget(ok);
  row->addWidget(cancel);
  layout_->addRow(row);
  connect(ok, &QPushButton::clicked, this, &EntryForm::OnOk);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void EntryForm::OnOk() {
  RunGuarded(messages_, [this] {
    if (const auto refusal = Refuse()) {
      ShowRefusal(messages_, *this, *refusal);
    } else {
      accept();
    }
  });
}

}  // namespace quillan
