#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "lists/list_host.h"
#include "platform/message_box.h"

namespace quillan {

/// The terminal as the lists see it: messages and progress on standard error; a question is
/// answered yes if the user said so beforehand, else with the most cautious answer. The interrupt
/// signal stops a save after the row under way.
class Console final : public ListHost, public MessageBox {
 public:
  explicit Console(bool answer_yes);

  /// Writes one line to standard error.
  static void Print(std::string_view line);
  /// The same, behind the program's name.
  static void PrintError(std::string_view line);

  bool OnProgress(int done, int total) override;
  bool OnTimeout(const std::string& message) override;
  MessageAnswer Show(std::string_view text, std::string_view title, MessageButtons buttons,
                     MessageIcon icon) override;

  /// Prints `question` and the answer given to it.
  bool Ask(std::string_view question) const;
  /// Whether the interrupt signal came.
  static bool Interrupted();

 private:
  using Clock = std::chrono::steady_clock;

  bool answer_yes_;
  bool terminal_;
  Clock::time_point start_;
  Clock::time_point last_shown_;
};

}  // namespace quillan
