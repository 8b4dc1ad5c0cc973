// Imports: what was exported is unchanged when it is imported, and accepted lines obey the rules of
// the lists.

#include <memory>
#include <set>

#include "fuzz/fuzz.h"
#include "lists/address_group_list.h"
#include "lists/port_list.h"
#include "platform/ado/drivers.h"
#include "platform/text/delimited_text.h"
#include "support/fakes.h"
#include "support/sqlite_file.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

// Two lists over a small database.
class Lists {
 public:
  Lists() {
    suite_.Run(
        "insert into ServicePorts (Port, ServiceName, System, Enabled) values (80, 'http', 1, 1), "
        "(8080, 'alt', 0, 0);"
        "insert into IPAddressGroups (IPRangeStart, IPRangeEnd, IPAddressGroupName, System, "
        "Enabled) values (10000000000, 10000000255, 'ten', 1, 1), "
        "(192168000000, 192168255255, 'home', 0, 1)");
    fuzz::Expect(database_.OpenDatabase(), "the database opens");
    ports.Refresh();
    groups.Refresh();
  }

 private:
  test::TemporaryFolder folder_;
  test::SqliteFile suite_{folder_ / "suite.db"};
  DiskFiles files_;
  std::filesystem::path connection_file_ =
      folder_.Write("TBKelvora.DB", "CONNECTION=Provider=SQLite;Data Source=suite.db\r\n");
  FlowDatabase database_{files_, folder_.path(), ado::InstalledDrivers(folder_.path())};
  test::FakeDesktop desktop_;
  test::FixedClock clock_;
  test::ScriptedMessageBox messages_;
  test::FakeListHost host_;
  text::UserLocale locale_{"C"};
  Registry registry_{folder_.path(), folder_.path()};
  Settings settings_{registry_, database_, desktop_, clock_, locale_};
  ListServices services_{database_, host_, messages_, clock_, locale_};

 public:
  PortList ports{services_, [] { return std::nullopt; }};
  AddressGroupList groups{services_, settings_, [](const Grid&) { return std::nullopt; }};
};

void CheckImport(EditableList& list, std::string_view bytes, ImportMode mode) {
  const ImportPlan plan = list.PlanImport(bytes, mode);
  std::set<std::pair<std::string, std::string>> keys;
  int line = 0;
  for (const ImportLine& planned : plan.lines) {
    fuzz::Expect(planned.line > line, "lines are in the order of the file");
    line = planned.line;
    if (planned.verdict == ImportVerdict::kRefused) {
      fuzz::Expect(!planned.reason.empty(), "a refusal says why");
    } else {
      fuzz::Expect(keys.insert({planned.key, planned.end}).second, "a key is accepted once");
    }
  }
  if (!plan.error.empty()) return;
  list.ApplyImport(plan);
  const std::string exported = ExportList(list.Table(), ',');
  const ImportPlan again = list.PlanImport(exported, mode);
  fuzz::ExpectSame(again.error, std::string(), "an export can be imported");
  fuzz::Expect(again.Count(ImportVerdict::kNew) == 0, "an export has no new rows");
  list.Refresh();
}

void CheckRecords(std::string_view text) {
  text::DelimitedReader reader(text);
  text::DelimitedRecord record;
  while (reader.Next(record)) {
    fuzz::Expect(!record.fields.empty(), "a record has fields");
    for (const char separator : {',', ';', '\t'}) {
      std::string written;
      const std::vector<std::string_view> fields(record.fields.begin(), record.fields.end());
      // The first line decides about the separator.
      text::AppendDelimitedRecord(std::vector<std::string_view>{"a", "b"}, separator, written);
      text::AppendDelimitedRecord(fields, separator, written);
      text::DelimitedReader again(written);
      text::DelimitedRecord read;
      fuzz::Expect(again.Next(read) && again.Next(read), "a written record can be read");
      fuzz::Expect(read.fields == record.fields, "its fields are the same");
    }
  }
}

}  // namespace
}  // namespace quillan

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using quillan::ImportMode;
  static quillan::Lists lists;
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  quillan::CheckRecords(quillan::text::DecodeTable(bytes));
  const ImportMode mode = (*data & 1) != 0 ? ImportMode::kReplace : ImportMode::kMerge;
  quillan::CheckImport(lists.ports, bytes, mode);
  quillan::CheckImport(lists.groups, bytes, mode);
  return 0;
}
