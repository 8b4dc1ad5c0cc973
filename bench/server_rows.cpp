#include <chrono>
#include <fstream>
#include <memory>
#include <stdexcept>

#include "bench/delaying_proxy.h"
#include "bench/harness.h"
#include "bench/suite.h"
#include "support/suite_server.h"

namespace quillan::bench {
namespace {

constexpr std::chrono::milliseconds kRoundTrip(20);

// How long it takes to save `ports` changed ports over FreeTDS, as a part of the time that one
// round trip a port takes.
double SaveFarAway(std::size_t ports) {
  const auto folder = std::make_shared<const SuiteFolder>(Ports(ports));
  test::SuiteServer server(folder->database());
  const DelayingProxy proxy(server.tds().port(), kRoundTrip);
  std::ofstream(folder->program() / "TBKelvora.DB")
      << "CONNECTION=" << test::SuiteServer::ConnectionStringOf(proxy.port()) << "\r\n";
  Program program(folder);
  const auto list = program.PortList();
  if (!list->Refresh()) throw std::runtime_error(list->LoadError());
  for (int row = Grid::kFixedRows; row < list->Table().Rows(); ++row) list->OnClick(row, 0);
  const auto start = std::chrono::steady_clock::now();
  const SaveOutcome outcome = list->Sync();
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  if (static_cast<std::size_t>(outcome.written) != ports) {
    throw std::runtime_error("a changed port was not written");
  }
  return time / (static_cast<double>(ports) * kRoundTrip);
}

}  // namespace

void AddServerRows() {
  AddMeasuredRow({"save changed ports at 20 ms to the server", 0.3, {{20000, 1}, {2000, 1}}, 200},
                 "of a round trip a row", &SaveFarAway);
}

}  // namespace quillan::bench
