#pragma once

#include <cstddef>
#include <string>

namespace quillan {

/// What a list asks of the window, or the command, that drives it. Each member does nothing, and
/// goes on, unless it is overridden.
class ListHost {
 public:
  virtual ~ListHost() = default;
  /// Shows the busy mouse pointer, or the usual one again.
  virtual void ShowBusyPointer() {}
  virtual void ShowDefaultPointer() {}
  /// Whether the user has stopped the work that is under way; nothing more is to be read then.
  virtual bool Stopped() const { return false; }
  /// A save has written `done` of `total` rows; false stops it before the next one.
  virtual bool OnProgress(int /*done*/, int /*total*/) { return true; }
  /// A load, or the query before a save, has gone through `done` of `total` rows; false stops it.
  virtual bool OnRowsRead(size_t /*done*/, size_t /*total*/) { return true; }
  /// The first time-out of a save expired; false stops it before the next row.
  virtual bool OnTimeout(const std::string& /*message*/) { return true; }
};

/// Shows the busy pointer during its life.
class BusyPointer {
 public:
  explicit BusyPointer(ListHost& host) : host_(host) { host_.ShowBusyPointer(); }
  ~BusyPointer() { host_.ShowDefaultPointer(); }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;

 private:
  ListHost& host_;
};

}  // namespace quillan
