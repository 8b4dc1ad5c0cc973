#pragma once

#include <memory>

#include <QElapsedTimer>
#include <QPushButton>
#include <QTimer>

#include "db/flow_database.h"
#include "dialog/save_status.h"
#include "lists/list_host.h"
#include "platform/message_box.h"
#include "platform/qt/input_blocker.h"
#include "platform/text/user_locale.h"

namespace quillan {

/// What a window shows while a save or a load runs: the busy pointer and, after half a second, how
/// far it is and a button that stops it. Meanwhile the window takes no other input.
class SaveProgress final : public QObject, public ListHost {
  Q_OBJECT

 public:
  /// `window` is the one whose pointer is shown; all of it outlives the object.
  SaveProgress(QWidget& window, SaveStatus& status, QPushButton& stop, FlowDatabase& database,
               MessageBox& messages, const text::UserLocale& locale);

  /// The time of one save or load. Of nested ones the outermost counts.
  class Work {
   public:
    explicit Work(SaveProgress& progress) : progress_(progress) { progress_.Begin(); }
    ~Work() { progress_.End(); }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

   private:
    SaveProgress& progress_;
  };

  /// Says what the work is at: "Saving groups".
  void ShowStep(const QString& step);
  /// Whether the user has stopped the work.
  bool Stopped() const override { return stopped_; }
  /// Goes on after a stop with what still has to be done.
  void Resume() { stopped_ = false; }

  void ShowBusyPointer() override;
  void ShowDefaultPointer() override;
  bool OnProgress(int done, int total) override;
  bool OnRowsRead(size_t done, size_t total) override;
  bool OnTimeout(const std::string& message) override;

 private:
  void Begin();
  void End();
  void OnStop();
  void ShowNow();
  void ShowCount(size_t done, size_t total);

  QWidget& window_;
  SaveStatus& status_;
  QPushButton& stop_;
  FlowDatabase& database_;
  MessageBox& messages_;
  const text::UserLocale& locale_;

  std::unique_ptr<InputBlocker> blocker_;
  QTimer delay_;
  QElapsedTimer repainted_;
  QString step_;
  QString text_;
  int depth_ = 0;
  int busy_ = 0;
  bool stopped_ = false;
  bool asked_ = false;  // Whether to go on after a time-out.
};

}  // namespace quillan
