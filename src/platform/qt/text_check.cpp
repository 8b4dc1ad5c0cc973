#include "platform/qt/text_check.h"

#include <QToolTip>

#include "platform/qt/qt_text.h"

namespace quillan {

QValidator::State TextCheck::validate(QString& text, int& /*cursor*/) const {
  if (text.size() <= first_size_) return Acceptable;
  const std::string reason = check_(ToUtf8(text));
  if (reason.empty()) return Acceptable;
  QToolTip::showText(line_->mapToGlobal(QPoint(0, line_->height())), ToQString(reason), line_);
  return Invalid;
}

}  // namespace quillan
