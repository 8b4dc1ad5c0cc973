#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "bench/rows.h"
#include "bench/timing.h"
#include "support/temporary_folder.h"

namespace quillan::bench {
namespace {

// The programs lie beside this one.
std::filesystem::path Beside(const char* name) {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path() / name;
}

// A program folder with the demonstration's data, and both programs in it.
struct Installation {
  Installation() {
    const std::string lay_out = "'" QUILLAN_SOURCE_DIR "/demo/lay_out' '" +
                                Beside("quillan_first_paint").string() + "' '" +
                                folder.path().string() + "'";
    if (std::system(lay_out.c_str()) != 0) throw std::runtime_error("no demonstration folder");
    std::filesystem::copy_file(Beside("empty_dialog"), folder / "empty_dialog");
  }

  test::TemporaryFolder folder;
};

// Starts a program and waits for its end, which is right after its first paint.
class Start final : public Side {
 public:
  Start(std::shared_ptr<const Installation> installation, std::string_view program)
      : installation_(std::move(installation)), program_(installation_->folder / program) {}

  void Run() override {
    std::string name = program_.string();
    char* const arguments[] = {name.data(), nullptr};
    pid_t process = 0;
    if (posix_spawn(&process, name.c_str(), nullptr, nullptr, arguments, environ) != 0 ||
        waitpid(process, &status_, 0) != process) {
      throw std::runtime_error("cannot start " + name);
    }
  }
  std::string Result() override {
    return WIFEXITED(status_) && WEXITSTATUS(status_) == 0 ? "painted"
                                                           : "failed: " + program_.string();
  }

 private:
  std::shared_ptr<const Installation> installation_;
  std::filesystem::path program_;
  int status_ = -1;
};

}  // namespace

std::vector<Row> StartUpRows() {
  Row row{.work = "process start to first painted page",
          .yardstick = "an empty dialog",
          .goal = 1.5,
          .sizes = {{1, 41}}};
  return {Timed(
      std::move(row),
      [](std::size_t) {
        const auto installation = std::make_shared<const Installation>();
        return Comparison{std::make_unique<Start>(installation, "quillan"),
                          std::make_unique<Start>(installation, "empty_dialog")};
      },
      TimedBy::kWall)};
}

}  // namespace quillan::bench
