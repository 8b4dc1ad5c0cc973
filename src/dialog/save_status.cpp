#include "dialog/save_status.h"

#include <QPainter>
#include <QStyleOption>

namespace quillan {

SaveStatus::SaveStatus(QWidget* parent) : QAbstractButton(parent) {
  setObjectName(QStringLiteral("SaveStatus"));
  QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  policy.setRetainSizeWhenHidden(true);
  setSizePolicy(policy);
  setFocusPolicy(Qt::TabFocus);  // Where it is disabled, Tab passes over it.
  Refresh();
}

void SaveStatus::ShowNote(const QString& text) {
  note_ = text;
  Refresh();
}

void SaveStatus::ShowPending(int count) {
  if (count != pending_) outcome_.clear();
  pending_ = count;
  Refresh();
}

void SaveStatus::ShowProgress(const QString& text) {
  progress_ = text;
  Refresh();
}

void SaveStatus::ShowOutcome(const QString& text) {
  outcome_ = text;
  Refresh();
}

void SaveStatus::Refresh() {
  QString shown =
      pending_ == 1 ? tr("1 change not saved") : tr("%1 changes not saved").arg(pending_);
  if (pending_ == 0) shown.clear();
  if (!outcome_.isEmpty()) shown = outcome_;
  if (!progress_.isEmpty()) shown = progress_;
  if (shown.isEmpty()) {
    shown = note_;
  } else {
    note_.clear();
  }
  const bool review = pending_ > 0 && progress_.isEmpty();
  setText(shown);
  setAccessibleName(shown);
  setVisible(!shown.isEmpty());
  setEnabled(review);
  setCursor(review ? Qt::PointingHandCursor : Qt::ArrowCursor);
  setToolTip(Elided() == shown ? QString() : shown);
  update();
}

QSize SaveStatus::sizeHint() const { return {0, fontMetrics().height() + 4}; }

QString SaveStatus::Elided() const {
  return fontMetrics().elidedText(text(), Qt::ElideRight, width());
}

void SaveStatus::resizeEvent(QResizeEvent* event) {
  QAbstractButton::resizeEvent(event);
  setToolTip(Elided() == text() ? QString() : text());
}

void SaveStatus::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(isEnabled() ? palette().color(QPalette::Link)
                             : palette().color(QPalette::Active, QPalette::WindowText));
  if (isEnabled()) {
    QFont underlined = font();
    underlined.setUnderline(true);
    painter.setFont(underlined);
  }
  painter.drawText(rect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, Elided());
  if (!hasFocus()) return;
  QStyleOptionFocusRect focus;
  focus.initFrom(this);
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}

}  // namespace quillan
