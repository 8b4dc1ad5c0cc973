#pragma once

#include <filesystem>
#include <string>

namespace quillan {

enum class OpenUrlResult { kOpened, kNoBrowser, kNotOpened };

/// What the program asks of the computer it runs on and of its desktop.
class Desktop {
 public:
  virtual ~Desktop() = default;
  /// Starts `program` as a process of its own, in its own folder, and does not wait for it; false
  /// when it cannot be started.
  virtual bool StartProgram(const std::filesystem::path& program) = 0;
  /// Opens `url` (or a file's path) with the program that the desktop has registered for it.
  virtual OpenUrlResult OpenUrl(const std::string& url) = 0;
  /// The host name up to its first dot; empty when it cannot be read.
  virtual std::string ComputerName() const = 0;
  /// Bits per pixel of the screen; 0 when it cannot be read.
  virtual int ColorDepth() const = 0;
};

/// The parts of a desktop that need no toolkit.
class PosixDesktop : public Desktop {
 public:
  bool StartProgram(const std::filesystem::path& program) override;
  /// Asks `xdg-open`, or else the first of the usual browsers on the search path; takes up to a
  /// second to learn that it failed.
  OpenUrlResult OpenUrl(const std::string& url) override;
  std::string ComputerName() const override;
  /// Without a toolkit no screen can be asked: 0.
  int ColorDepth() const override { return 0; }
};

}  // namespace quillan
