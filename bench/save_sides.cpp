#include "bench/save_sides.h"

#include "platform/ado/sqlite_dialect.h"

namespace quillan::bench {
namespace {

class ListSave final : public Side {
 public:
  explicit ListSave(const SaveWork& work, test::DriverScript* script = nullptr)
      : work_(work), script_(script) {}

  void Prepare() override {
    list_.reset();
    program_.reset();
    folder_.emplace(*work_.original);
    program_.emplace(*folder_, script_);
    list_ = ((*program_).*work_.list)();
    list_->Refresh();
    work_.change(*list_);
  }
  void Run() override { list_->Sync(); }
  std::string Result() override {
    PlainDatabase database(folder_->database());
    return work_.describe(database);
  }

 private:
  SaveWork work_;
  test::DriverScript* script_;
  std::optional<SuiteFolder> folder_;
  std::optional<Program> program_;
  std::unique_ptr<CheckableList> list_;
};

class PlainSave final : public Side {
 public:
  PlainSave(const SaveWork& work, std::vector<std::string> statements)
      : work_(work), statements_(std::move(statements)) {}

  void Prepare() override {
    database_.reset();
    folder_.emplace(*work_.original);
    database_.emplace(folder_->database());
  }
  void Run() override {
    for (const std::string& statement : statements_) database_->Run(statement);
  }
  std::string Result() override { return work_.describe(*database_); }

 private:
  SaveWork work_;
  std::vector<std::string> statements_;
  std::optional<SuiteFolder> folder_;
  std::optional<PlainDatabase> database_;
};

}  // namespace

std::vector<std::string> StatementsOf(const SaveWork& work) {
  test::DriverScript script;
  ListSave save(work, &script);
  save.Prepare();
  script.statements.clear();
  save.Run();
  for (std::string& statement : script.statements) statement = ado::TranslateToSqlite(statement);
  return script.statements;
}

Comparison CompareSaves(const SaveWork& work, std::vector<std::string> statements) {
  return {std::make_unique<ListSave>(work),
          std::make_unique<PlainSave>(work, std::move(statements))};
}

}  // namespace quillan::bench
