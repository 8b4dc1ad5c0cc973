#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "bench/harness.h"
#include "bench/suite.h"
#include "support/temporary_folder.h"

namespace quillan::bench {
namespace {

// The programs are in the folder of this one.
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
    std::filesystem::copy_file(Beside("plain_dialog"), folder / "plain_dialog");
  }

  test::TemporaryFolder folder;
};

// Starts a program and waits until it ends, which it does after its first paint.
void Start(const std::filesystem::path& program) {
  std::string name = program.string();
  char* const arguments[] = {name.data(), nullptr};
  pid_t process = 0;
  int status = -1;
  if (posix_spawn(&process, name.c_str(), nullptr, nullptr, arguments, environ) != 0 ||
      waitpid(process, &status, 0) != process || status != 0) {
    throw std::runtime_error(name + " did not paint its window");
  }
}

Side Starting(const std::shared_ptr<const Installation>& installation, std::string_view program) {
  return {nullptr, [=, path = installation->folder / program] { Start(path); },
          [=, keep = installation] { return std::string("painted"); }};
}

// Two programs that print the same list, and what they printed.
struct Listing {
  explicit Listing(std::size_t size) : suite(Interfaces(size)) {}

  void Run(const std::string& command) {
    if (std::system((command + " >'" + output().string() + "'").c_str()) != 0) {
      throw std::runtime_error(command + " failed");
    }
  }
  std::string Result() const {
    std::ifstream file(output(), std::ios::binary);
    Checksum sum;
    std::size_t lines = 0;
    for (std::string line; std::getline(file, line); ++lines) sum.Add(line);
    return std::to_string(lines) + " lines, sum " + sum.Text();
  }
  std::filesystem::path output() const { return suite.program() / "output.csv"; }

  SuiteFolder suite;
};

// Yardstick: a program with a loop over the rows of the driver.
Comparison CompareListing(std::size_t size) {
  const auto listing = std::make_shared<Listing>(size);
  const auto result = [=] { return listing->Result(); };
  const std::string ours = "QUILLAN_HOME='" + listing->suite.program().string() + "' '" +
                           Beside("quillanctl").string() + "' sources list --format csv";
  const std::string plain =
      "'" + Beside("plain_list").string() + "' '" + listing->suite.database().string() + "'";
  return {{nullptr, [=] { listing->Run(ours); }, result},
          {nullptr, [=] { listing->Run(plain); }, result}};
}

}  // namespace

void AddProcessRows() {
  AddTimedRow({"quillanctl sources list", 1.5, {{1000000, 5}, {100000, 11}, {10000, 31}}, 1000},
              &CompareListing, TimedBy::kWall);
  // Yardstick: a dialog with one tab, one label, one text box and one empty table.
  AddTimedRow(
      {"process start to first painted page", 1.3, {{1, 41}}, 1},
      [](std::size_t) {
        const auto installation = std::make_shared<const Installation>();
        return Comparison{Starting(installation, "quillan"),
                          Starting(installation, "plain_dialog")};
      },
      TimedBy::kWall);
}

}  // namespace quillan::bench
