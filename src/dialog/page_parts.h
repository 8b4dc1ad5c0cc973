#pragma once

#include <QFrame>
#include <QLabel>
#include <QScrollBar>
#include <QString>

namespace quillan {

/// The untitled frame in which a page's controls stand.
QFrame* NewPageFrame(QWidget* page);

/// A label in bold type.
QLabel* NewHeading(const QString& text, QWidget* parent);

/// A label whose lines break at words.
QLabel* NewParagraph(const QString& text, QWidget* parent);

/// A horizontal scroll bar over `minimum`..`maximum` that stands at `value`.
QScrollBar* NewScrollBar(const QString& name, int minimum, int maximum, int large_step, int value,
                         QWidget* parent);

/// Moves `bar` to `value`; a value outside its range leaves it where it is.
void SetScrollValue(QScrollBar& bar, int value);

}  // namespace quillan
