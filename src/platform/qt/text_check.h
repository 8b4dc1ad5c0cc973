#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <QLineEdit>
#include <QValidator>

namespace quillan {

/// Why a text cannot be taken; empty if it can.
using CheckText = std::function<std::string(std::string_view text)>;

/// Keeps a text that cannot be taken out of a line edit: what was typed or pasted is refused as a
/// whole, and a tooltip says why. A text that the line edit begins with, and any shorter one,
/// stays.
class TextCheck final : public QValidator {
  Q_OBJECT

 public:
  /// `text` is the one that the line edit begins with.
  TextCheck(QLineEdit* line, const QString& text, CheckText check)
      : QValidator(line), line_(line), first_size_(text.size()), check_(std::move(check)) {}

  State validate(QString& text, int& cursor) const override;

 private:
  QLineEdit* line_;
  qsizetype first_size_;
  CheckText check_;
};

}  // namespace quillan
