#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ado/driver.h"
#include "platform/ado/error.h"

namespace quillan::test {

/// What passed through the drivers of a test, and what to do to it.
struct DriverScript {
  std::vector<std::string> statements;  ///< Every Execute and Query, in order.
  int sessions = 0;                     ///< How often a session was opened.
  /// Called before each statement with its text; may throw `ado::Error` to make it fail.
  std::function<void(const std::string&)> before = [](const std::string&) {};
  /// Whether batches are left to the driver, as one; then their statements do not pass here.
  bool keep_batches = false;
  /// Called after each statement that ran; may throw to lose its answer.
  std::function<void()> after = [] {};

  /// A factory whose drivers do what `drivers` do, by this script.
  ado::DriverFactory Wrap(ado::DriverFactory drivers);
};

class ScriptedDriver final : public ado::Driver {
 public:
  ScriptedDriver(std::unique_ptr<ado::Driver> driver, DriverScript& script)
      : driver_(std::move(driver)), script_(script) {}

  void Execute(std::string_view statement) override {
    Pass(statement).Execute(statement);
    script_.after();
  }
  std::vector<ado::Outcome> ExecuteBatch(std::span<const std::string> statements,
                                         ado::BatchMode mode) override {
    if (script_.keep_batches) return driver_->ExecuteBatch(statements, mode);
    return ado::ExecuteOneByOne(*this, statements, mode);
  }
  ado::RowStore Query(std::string_view query) override {
    ado::RowStore rows = Pass(query).Query(query);
    script_.after();
    return rows;
  }
  void ReadUncommitted() override { driver_->ReadUncommitted(); }
  std::vector<std::string> PrimaryKey(std::string_view table) override {
    return driver_->PrimaryKey(table);
  }
  void ChangeOneRow(std::string_view statement, std::span<const ado::Value> values) override {
    Pass(statement).ChangeOneRow(statement, values);
  }
  std::string Property(std::string_view name) override { return driver_->Property(name); }
  void Cancel() override { driver_->Cancel(); }

 private:
  // Writes the statement down and returns the driver that is to run it.
  ado::Driver& Pass(std::string_view statement) {
    script_.statements.emplace_back(statement);
    script_.before(script_.statements.back());
    return *driver_;
  }

  std::unique_ptr<ado::Driver> driver_;
  DriverScript& script_;
};

inline ado::DriverFactory DriverScript::Wrap(ado::DriverFactory drivers) {
  return [this, drivers = std::move(drivers)](const ado::ConnectOptions& options) {
    ++sessions;
    return std::make_unique<ScriptedDriver>(drivers(options), *this);
  };
}

}  // namespace quillan::test
