#pragma once

#include <string>

namespace quillan {

/// A document to print.
struct PrintJob {
  std::string title;    ///< Its name among the printer's jobs.
  std::string html;     ///< Its content, one self-contained page of HTML.
  std::string printer;  ///< The printer's name; empty: the user chooses.
  bool landscape = false;
  bool preview = false;  ///< Shows the pages and lets the user print from there.
};

/// The printers of the computer.
class Printers {
 public:
  virtual ~Printers() = default;
  /// Whether at least one printer is installed.
  virtual bool AnyInstalled() const = 0;
  /// Prints or previews `job`. False if the user cancels it or if it cannot be printed.
  virtual bool Print(const PrintJob& job) = 0;
};

}  // namespace quillan
