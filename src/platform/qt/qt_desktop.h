#pragma once

#include "platform/desktop.h"

namespace quillan {

/// The desktop that Qt runs on.
class QtDesktop final : public Desktop {
 public:
  QtDesktop();

  bool StartProgram(const std::filesystem::path& program) override;
  /// Asks `xdg-open`, or else the first of the usual browsers on the search path; takes up to a
  /// second to learn that it failed.
  OpenUrlResult OpenUrl(const std::string& url) override;
  int ColorDepth() const override;
};

}  // namespace quillan
