#include "platform/desktop.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <system_error>

#include "platform/text/ascii.h"

namespace quillan {
namespace {

// The openers of a Debian desktop, the desktop's own choice first.
constexpr std::array<std::string_view, 5> kOpeners = {"xdg-open", "x-www-browser",
                                                      "sensible-browser", "firefox", "chromium"};

// What xdg-open says when it finds nothing to open a page with (its manual page, "exit codes").
constexpr int kNoTool = 3;

std::optional<std::filesystem::path> FindOnSearchPath(std::string_view name) {
  const char* search_path = getenv("PATH");
  std::string_view rest = search_path != nullptr ? search_path : "";
  while (!rest.empty()) {
    const size_t end = rest.find(':');
    const std::filesystem::path candidate = std::filesystem::path(rest.substr(0, end)) / name;
    std::error_code error;
    if (end != 0 && std::filesystem::is_regular_file(candidate, error) &&
        access(candidate.c_str(), X_OK) == 0) {
      return candidate;
    }
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return std::nullopt;
}

// What a detached program is waited for: that it runs, or that it does not fail within a second.
enum class WaitFor { kStart, kFirstSecond };

// The exit status of a program that could not be run, as shells have it.
constexpr int kNotRun = 127;

// The exit status of `child` if it ends within a second, else 0. SIGCHLD must be blocked.
int StatusWithinASecond(pid_t child, const sigset_t& child_ended) {
  const timespec second{1, 0};
  int status = 0;
  if (sigtimedwait(&child_ended, nullptr, &second) < 0) return 0;
  if (waitpid(child, &status, WNOHANG) != child) return 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : kNotRun;
}

// In the child: runs the program in a session of its own, as a grandchild that nobody has to wait
// for. The child's exit status is 0, or that of a program which could not be run or, where that is
// asked for, failed within its first second. Only calls that are safe after a fork.
[[noreturn]] void RunDetached(const char* program, char* const* arguments, const char* folder,
                              WaitFor wait_for) {
  setsid();
  sigset_t child_ended;
  sigemptyset(&child_ended);
  sigaddset(&child_ended, SIGCHLD);
  sigprocmask(SIG_BLOCK, &child_ended, nullptr);
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) _exit(kNotRun);
  const pid_t grandchild = fork();
  if (grandchild == 0) {
    sigprocmask(SIG_UNBLOCK, &child_ended, nullptr);
    if (folder != nullptr && chdir(folder) != 0) {
      // The program may well run in another folder.
    }
    execv(program, arguments);
    // A successful exec closes the pipe without a word.
    if (write(ends[1], "", 1) != 1) _exit(kNotRun);
    _exit(kNotRun);
  }
  close(ends[1]);
  char failed = 0;
  if (grandchild < 0 || read(ends[0], &failed, 1) != 0) _exit(kNotRun);
  _exit(wait_for == WaitFor::kStart ? 0 : StatusWithinASecond(grandchild, child_ended));
}

// Runs `program` detached from this process; 0 or its exit status as RunDetached tells it.
int StartDetached(const std::filesystem::path& program, const std::string* argument,
                  const std::filesystem::path& folder, WaitFor wait_for) {
  std::string name = program.string();
  std::string copy = argument != nullptr ? *argument : std::string();
  std::array<char*, 3> arguments = {name.data(), argument != nullptr ? copy.data() : nullptr,
                                    nullptr};
  const pid_t child = fork();
  if (child < 0) return kNotRun;
  if (child == 0) {
    RunDetached(name.c_str(), arguments.data(), folder.empty() ? nullptr : folder.c_str(),
                wait_for);
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kNotRun;
}

}  // namespace

bool PosixDesktop::StartProgram(const std::filesystem::path& program) {
  return StartDetached(program, nullptr, program.parent_path(), WaitFor::kStart) == 0;
}

OpenUrlResult PosixDesktop::OpenUrl(const std::string& url) {
  for (const std::string_view opener : kOpeners) {
    const auto program = FindOnSearchPath(opener);
    if (!program) continue;
    switch (StartDetached(*program, &url, {}, WaitFor::kFirstSecond)) {
      case 0:
        return OpenUrlResult::kOpened;
      case kNoTool:
        return OpenUrlResult::kNoBrowser;
      default:
        return OpenUrlResult::kNotOpened;
    }
  }
  return OpenUrlResult::kNoBrowser;
}

std::string PosixDesktop::ComputerName() const {
  std::array<char, HOST_NAME_MAX + 1> name{};
  if (gethostname(name.data(), name.size() - 1) != 0) return {};
  const std::string full(name.data());
  return full.substr(0, full.find('.'));
}

void OpenInBrowser(Desktop& desktop, MessageBox& messages, const std::string& url) {
  switch (desktop.OpenUrl(url)) {
    case OpenUrlResult::kOpened:
      break;
    case OpenUrlResult::kNoBrowser:
      messages.Show("Could not find default Browser", "Browser Not Found", MessageButtons::kOk,
                    MessageIcon::kExclamation);
      break;
    case OpenUrlResult::kNotOpened:
      messages.Show("Web Page not Opened", "URL Failed", MessageButtons::kOk,
                    MessageIcon::kExclamation);
      break;
  }
}

std::string LocalComputerName(const Desktop& desktop) {
  const std::string name = desktop.ComputerName();
  std::string_view trimmed = text::TrimSpaces(name);
  while (trimmed.ends_with('\0')) {
    trimmed.remove_suffix(1);
    trimmed = text::TrimSpaces(trimmed);
  }
  return std::string(trimmed);
}

}  // namespace quillan
