#pragma once

namespace quillan {

/// The printers of the computer; a test scripts them.
class Printers {
 public:
  virtual ~Printers() = default;
  /// Whether at least one printer is installed.
  virtual bool AnyInstalled() const = 0;
};

}  // namespace quillan
