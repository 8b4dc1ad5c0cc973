#include "dialog/entry_form.h"

#include <limits>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace quillan {
namespace {

constexpr int kBoxWidth = 260;

QPushButton* NewButton(const QString& name, const QString& caption, QDialog& dialog) {
  auto* button = new QPushButton(caption, &dialog);
  button->setObjectName(name);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

EntryForm::EntryForm(QDialog& dialog, const QString& caption, std::function<void()> on_ok)
    : dialog_(dialog), on_ok_(std::move(on_ok)), layout_(new QFormLayout(&dialog)) {
  dialog_.setWindowTitle(caption);
  dialog_.setModal(true);
  layout_->setSizeConstraint(QLayout::SetFixedSize);
}

QLineEdit* EntryForm::AddBox(const QString& name, const QString& label) {
  auto* box = new QLineEdit(&dialog_);
  box->setObjectName(name);
  box->setAccessibleName(label);
  box->setMinimumWidth(kBoxWidth);
  box->setMaxLength(std::numeric_limits<int>::max());
  layout_->addRow(label, box);
  boxes_.push_back(box);
  return box;
}

void EntryForm::AddButtons() {
  for (size_t i = 0; i < boxes_.size(); ++i) {
    if (i + 1 < boxes_.size()) {
      QObject::connect(boxes_[i], &QLineEdit::returnPressed, boxes_[i + 1],
                       qOverload<>(&QWidget::setFocus));
    } else {
      QObject::connect(boxes_[i], &QLineEdit::returnPressed, &dialog_, on_ok_);
    }
  }
  auto* row = new QHBoxLayout();
  row->addStretch();
  QPushButton* ok = NewButton(QStringLiteral("cmdOK"), QObject::tr("OK"), dialog_);
  QPushButton* cancel = NewButton(QStringLiteral("cmdCancel"), QObject::tr("Cancel"), dialog_);
  row->addWidget(ok);
  row->addWidget(cancel);
  layout_->addRow(row);
  QObject::connect(ok, &QPushButton::clicked, &dialog_, on_ok_);
  QObject::connect(cancel, &QPushButton::clicked, &dialog_, &QDialog::reject);
}

}  // namespace quillan
