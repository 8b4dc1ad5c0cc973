#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "lists/list_host.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/message_box.h"
#include "platform/printers.h"

namespace quillan::test {

/// Records every message and answers as it was told, else with the first button.
class ScriptedMessageBox final : public MessageBox {
 public:
  struct Message {
    std::string text;
    std::string title;
    MessageButtons buttons;
    MessageIcon icon;
  };

  MessageAnswer Show(std::string_view text, std::string_view title, MessageButtons buttons,
                     MessageIcon icon) override {
    messages.push_back({std::string(text), std::string(title), buttons, icon});
    if (answers.empty()) {
      return buttons == MessageButtons::kOk ? MessageAnswer::kOk : MessageAnswer::kYes;
    }
    const MessageAnswer answer = answers.front();
    answers.pop_front();
    return answer;
  }

  std::vector<Message> messages;
  std::deque<MessageAnswer> answers;
};

/// Stands at 1 June 2007 13:05:09 until it is set.
class FixedClock final : public Clock {
 public:
  text::DateTime Now() const override { return now; }

  text::DateTime now = std::chrono::local_days{std::chrono::year{2007} / std::chrono::June / 1} +
                       std::chrono::hours{13} + std::chrono::minutes{5} + std::chrono::seconds{9};
};

/// A computer that records what it is asked to start and open.
class FakeDesktop final : public Desktop {
 public:
  bool StartProgram(const std::filesystem::path& program) override {
    started.push_back(program);
    return starts;
  }
  OpenUrlResult OpenUrl(const std::string& url) override {
    opened.push_back(url);
    return open_result;
  }
  std::string ComputerName() const override { return computer_name; }
  int ColorDepth() const override { return color_depth; }

  std::string computer_name = "collector";
  OpenUrlResult open_result = OpenUrlResult::kOpened;
  int color_depth = 24;
  bool starts = true;
  std::vector<std::filesystem::path> started;
  std::vector<std::string> opened;
};

/// Keeps what is printed.
class FakePrinters final : public Printers {
 public:
  bool AnyInstalled() const override { return installed; }
  bool Print(const PrintJob& job) override {
    jobs.push_back(job);
    return true;
  }

  bool installed = true;
  std::vector<PrintJob> jobs;
};

/// A window that counts how often the busy pointer was shown and whose user may stop a load.
class FakeListHost final : public ListHost {
 public:
  void ShowBusyPointer() override { ++busy_shown, busy = true; }
  void ShowDefaultPointer() override { busy = false; }
  bool OnRowsRead(size_t /*done*/, size_t /*total*/) override { return goes_on_reading(); }
  bool Stopped() const override { return stopped; }

  std::function<bool()> goes_on_reading = [] { return true; };
  bool stopped = false;
  int busy_shown = 0;
  bool busy = false;
};

}  // namespace quillan::test
