#include "dialog/page_parts.h"

#include <QVBoxLayout>

#include "dialog/lengths.h"

namespace quillan {

QFrame* NewPageFrame(QWidget* page) {
  auto* frame = new QFrame(page);
  frame->setFrameShape(QFrame::StyledPanel);
  frame->setAccessibleName(page->accessibleName());
  auto* layout = new QVBoxLayout(page);
  const int margin = ToPixels(kMargin);
  layout->setContentsMargins(margin, margin, margin, margin);
  layout->addWidget(frame);
  return frame;
}

QLabel* NewHeading(const QString& text, QWidget* parent) {
  auto* label = NewParagraph(text, parent);
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  return label;
}

QLabel* NewParagraph(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

QScrollBar* NewScrollBar(const QString& name, int minimum, int maximum, int large_step, int value,
                         QWidget* parent) {
  auto* bar = new QScrollBar(Qt::Horizontal, parent);
  bar->setObjectName(name);
  bar->setRange(minimum, maximum);
  bar->setSingleStep(1);
  bar->setPageStep(large_step);
  bar->setValue(value);
  bar->setFocusPolicy(Qt::StrongFocus);
  return bar;
}

void SetScrollValue(QScrollBar& bar, int value) {
  if (value >= bar.minimum() && value <= bar.maximum()) bar.setValue(value);
}

}  // namespace quillan
