#include "dialog/save_progress.h"

#include "platform/program.h"
#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

constexpr int kDelayMilliseconds = 500;
constexpr int kRepaintMilliseconds = 50;

}  // namespace

SaveProgress::SaveProgress(QWidget& window, SaveStatus& status, QPushButton& stop,
                           FlowDatabase& database, MessageBox& messages,
                           const text::UserLocale& locale)
    : window_(window),
      status_(status),
      stop_(stop),
      database_(database),
      messages_(messages),
      locale_(locale) {
  delay_.setSingleShot(true);
  delay_.setInterval(kDelayMilliseconds);
  connect(&delay_, &QTimer::timeout, this, &SaveProgress::ShowNow);
  connect(&stop_, &QPushButton::clicked, this, &SaveProgress::OnStop);
}

void SaveProgress::Begin() {
  if (depth_++ > 0) return;
  stopped_ = false;
  asked_ = false;
  text_.clear();
  blocker_ = std::make_unique<InputBlocker>(&stop_);
  delay_.start();
}

void SaveProgress::End() {
  if (--depth_ > 0) return;
  delay_.stop();
  stop_.hide();
  status_.ShowProgress({});
  blocker_.reset();
}

void SaveProgress::ShowStep(const QString& step) {
  step_ = text_ = step;
  if (stop_.isVisible()) ShowNow();
}

void SaveProgress::ShowNow() {
  status_.ShowProgress(text_);
  stop_.setVisible(true);
}

void SaveProgress::ShowCount(size_t done, size_t total) {
  const auto number = [&](size_t count) {
    return ToQString(locale_.GroupedNumber(static_cast<std::int64_t>(count)));
  };
  text_ = tr("%1, %2 of %3").arg(step_, number(done), number(total));
  if (stop_.isVisible() && !stopped_) status_.ShowProgress(text_);
}

bool SaveProgress::OnProgress(int done, int total) {
  ShowCount(static_cast<size_t>(done), static_cast<size_t>(total));
  return !stopped_;
}

// Rows are read from memory: no call of the session repaints the window meanwhile.
bool SaveProgress::OnRowsRead(size_t done, size_t total) {
  ShowCount(done, total);
  if (repainted_.isValid() && repainted_.elapsed() < kRepaintMilliseconds) return !stopped_;
  InputBlocker::ProcessEvents();
  repainted_.start();
  return !stopped_;
}

bool SaveProgress::OnTimeout(const std::string& message) {
  if (asked_ || stopped_) return !stopped_;
  asked_ = true;
  stopped_ = messages_.Show(message + "\r\n\r\nThe database did not answer in time. Keep trying?",
                            kDisplayName, MessageButtons::kYesNo,
                            MessageIcon::kExclamation) != MessageAnswer::kYes;
  return !stopped_;
}

// The first press stops after the statement under way, the second one cancels that too.
void SaveProgress::OnStop() {
  if (stopped_) database_.Cancel();
  stopped_ = true;
  status_.ShowProgress(tr("Stopping"));
}

void SaveProgress::ShowBusyPointer() {
  if (busy_++ == 0) window_.setCursor(Qt::WaitCursor);
}

void SaveProgress::ShowDefaultPointer() {
  if (--busy_ == 0) window_.unsetCursor();
}

}  // namespace quillan
