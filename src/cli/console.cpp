#include "cli/console.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>

namespace quillan {
namespace {

// Lock-free by the language's rules for signal handlers.
volatile std::sig_atomic_t interrupted = 0;

void NoteInterrupt(int /*signal*/) { interrupted = 1; }

// `text` with its CR, CR LF and LF as LF, none at the end.
std::string WithPlainLineEnds(std::string_view text) {
  std::string plain;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r') {
      plain += text[i];
    } else if (text.substr(i, 2) != "\r\n") {
      plain += '\n';
    }
  }
  while (plain.ends_with('\n')) plain.pop_back();
  return plain;
}

}  // namespace

Console::Console(bool answer_yes)
    : answer_yes_(answer_yes),
      terminal_(isatty(STDERR_FILENO) == 1),
      start_(Clock::now()),
      last_shown_(start_) {
  struct sigaction action {};
  action.sa_handler = NoteInterrupt;
  // The statement under way is finished; a second signal ends the process.
  action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
  sigaction(SIGINT, &action, nullptr);
}

void Console::Print(std::string_view line) {
  std::fprintf(stderr, "%s\n", WithPlainLineEnds(line).c_str());
}

void Console::PrintError(std::string_view line) { Print("quillanctl: " + std::string(line)); }

bool Console::Interrupted() { return interrupted != 0; }

bool Console::OnProgress(int done, int total) {
  using std::chrono::milliseconds;
  const auto now = Clock::now();
  if (terminal_ && now - start_ > milliseconds(1000) && now - last_shown_ > milliseconds(100)) {
    last_shown_ = now;
    std::fprintf(stderr, "\r%d of %d rows", done, total);
  }
  if (terminal_ && done == total) std::fputs("\r\033[K", stderr);
  return !Interrupted();
}

bool Console::OnTimeout(const std::string& message) {
  return Ask(message + "\nContinue with the next row?");
}

MessageAnswer Console::Show(std::string_view text, std::string_view /*title*/,
                            MessageButtons buttons, MessageIcon /*icon*/) {
  if (buttons == MessageButtons::kOk) {
    Print(text);
    return MessageAnswer::kOk;
  }
  if (Ask(text)) return MessageAnswer::kYes;
  return buttons == MessageButtons::kYesNo ? MessageAnswer::kNo : MessageAnswer::kCancel;
}

bool Console::Ask(std::string_view question) const {
  Print(question);
  Print(answer_yes_ ? "(answered yes)" : "(answered no; --yes answers yes)");
  return answer_yes_;
}

}  // namespace quillan
