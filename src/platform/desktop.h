#pragma once

#include <filesystem>
#include <string>

#include "platform/message_box.h"

namespace quillan {

enum class OpenUrlResult { kOpened, kNoBrowser, kNotOpened };

/// What the program asks of the computer it runs on and of its desktop. This base stands for a
/// computer without a desktop: it knows the computer's name, starts nothing and has no screen.
class Desktop {
 public:
  virtual ~Desktop() = default;
  /// Starts `program` as a process of its own, in its own folder, and does not wait for it; false
  /// when it cannot be started.
  virtual bool StartProgram(const std::filesystem::path& /*program*/) { return false; }
  /// Opens `url` (or a file's path) with the program that the desktop has registered for it.
  virtual OpenUrlResult OpenUrl(const std::string& /*url*/) { return OpenUrlResult::kNoBrowser; }
  /// The host name up to its first dot; empty when it cannot be read.
  virtual std::string ComputerName() const;
  /// Bits per pixel of the screen; 0 when it cannot be read.
  virtual int ColorDepth() const { return 0; }
};

/// Opens a web page in the user's browser; tells the user when there is none or it does not start.
void OpenInBrowser(Desktop& desktop, MessageBox& messages, const std::string& url);

/// The computer's name, by which the collector's row of this computer is found; without spaces and
/// NUL characters at its ends.
std::string LocalComputerName(const Desktop& desktop);

/// Bits per pixel of the screen; 0 when it cannot be read.
inline int ScreenColorDepth(const Desktop& desktop) { return desktop.ColorDepth(); }

}  // namespace quillan
