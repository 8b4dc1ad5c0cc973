#pragma once

#include <filesystem>
#include <string>

#include "platform/message_box.h"

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

/// Opens a web page in the user's browser; tells the user when there is none or it does not start.
void OpenInBrowser(Desktop& desktop, MessageBox& messages, const std::string& url);

/// The computer's name, by which the collector's row of this computer is found; without spaces and
/// NUL characters at its ends.
std::string LocalComputerName(const Desktop& desktop);

/// Bits per pixel of the screen; 0 when it cannot be read.
inline int ScreenColorDepth(const Desktop& desktop) { return desktop.ColorDepth(); }

}  // namespace quillan
