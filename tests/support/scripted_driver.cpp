#include "support/scripted_driver.h"

namespace quillan::test {
namespace {

class ScriptedDriver final : public ado::Driver {
 public:
  ScriptedDriver(std::unique_ptr<ado::Driver> driver, DriverScript& script)
      : driver_(std::move(driver)), script_(script) {}

  void Execute(std::string_view statement) override {
    Pass(statement);
    driver_->Execute(statement);
  }
  std::vector<ado::Outcome> ExecuteBatch(std::span<const std::string> statements,
                                         ado::BatchMode mode) override {
    return ado::ExecuteOneByOne(*this, statements, mode);
  }
  ado::RowStore Query(std::string_view query) override {
    Pass(query);
    return driver_->Query(query);
  }
  void ReadUncommitted() override { driver_->ReadUncommitted(); }
  std::vector<std::string> PrimaryKey(std::string_view table) override {
    return driver_->PrimaryKey(table);
  }
  void ChangeOneRow(std::string_view statement, std::span<const ado::Value> values) override {
    Pass(statement);
    driver_->ChangeOneRow(statement, values);
  }
  std::string Property(std::string_view name) override { return driver_->Property(name); }
  void Cancel() override { driver_->Cancel(); }

 private:
  void Pass(std::string_view statement) {
    script_.statements.emplace_back(statement);
    script_.before(script_.statements.back());
  }

  std::unique_ptr<ado::Driver> driver_;
  DriverScript& script_;
};

}  // namespace

ado::DriverFactory DriverScript::Wrap(ado::DriverFactory drivers) {
  return [this, drivers = std::move(drivers)](const ado::ConnectOptions& options) {
    ++sessions;
    return std::make_unique<ScriptedDriver>(drivers(options), *this);
  };
}

}  // namespace quillan::test
