#include "platform/desktop.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace quillan {
namespace {

// The openers of a Debian desktop, the desktop's own choice first.
constexpr std::array<std::string_view, 5> kOpeners = {"xdg-open", "x-www-browser",
                                                      "sensible-browser", "firefox", "chromium"};

std::optional<std::filesystem::path> FindOnSearchPath(std::string_view name) {
  const char* search_path = getenv("PATH");
  std::string_view rest = search_path != nullptr ? search_path : "";
  while (!rest.empty()) {
    const size_t end = rest.find(':');
    const std::filesystem::path candidate = std::filesystem::path(rest.substr(0, end)) / name;
    if (access(candidate.c_str(), X_OK) == 0) return candidate;
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return std::nullopt;
}

// In the child: becomes a session of its own and runs the program; the pipe, closed by a successful
// exec, carries the error of a failed one.
[[noreturn]] void RunDetached(const char* program, char* const* arguments, const char* folder,
                              int error_pipe) {
  setsid();
  if (fork() != 0) _exit(0);
  if (folder != nullptr && chdir(folder) != 0) {
    // The program may well run in another folder.
  }
  execv(program, arguments);
  const int error = errno;
  if (write(error_pipe, &error, sizeof error) != sizeof error) _exit(126);
  _exit(127);
}

// Runs `program` detached from this process; true when it was started.
bool StartDetached(const std::filesystem::path& program, const std::string* argument,
                   const std::filesystem::path& folder) {
  std::string name = program.string();
  std::string copy = argument != nullptr ? *argument : std::string();
  std::array<char*, 3> arguments = {name.data(), argument != nullptr ? copy.data() : nullptr,
                                    nullptr};
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return false;
  const pid_t child = fork();
  if (child == 0) {
    RunDetached(name.c_str(), arguments.data(), folder.empty() ? nullptr : folder.c_str(), ends[1]);
  }
  close(ends[1]);
  bool started = child > 0;
  if (started) {
    waitpid(child, nullptr, 0);
    int error = 0;
    started = read(ends[0], &error, sizeof error) == 0;
  }
  close(ends[0]);
  return started;
}

}  // namespace

bool PosixDesktop::StartProgram(const std::filesystem::path& program) {
  return StartDetached(program, nullptr, program.parent_path());
}

OpenUrlResult PosixDesktop::OpenUrl(const std::string& url) {
  for (const std::string_view opener : kOpeners) {
    if (const auto program = FindOnSearchPath(opener)) {
      return StartDetached(*program, &url, {}) ? OpenUrlResult::kOpened : OpenUrlResult::kNotOpened;
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

}  // namespace quillan
