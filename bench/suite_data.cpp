#include "bench/suite_data.h"

#include <random>
#include <string_view>

namespace quillan::bench {
namespace {

constexpr std::uint64_t kSeed = 20070601;

// Inserts rows into one table, many at a time.
class Inserter {
 public:
  Inserter(test::SqliteFile& database, std::string_view into) : database_(database), into_(into) {}
  ~Inserter() { Flush(); }
  Inserter(const Inserter&) = delete;
  Inserter& operator=(const Inserter&) = delete;

  void Add(std::string_view values) {
    rows_ += (rows_.empty() ? "(" : ",(") + std::string(values) + ")";
    if (rows_.size() > kMostBytes) Flush();
  }

 private:
  static constexpr std::size_t kMostBytes = 100000;

  void Flush() {
    if (!rows_.empty()) database_.Run("insert into " + into_ + " values " + rows_);
    rows_.clear();
  }

  test::SqliteFile& database_;
  std::string into_;
  std::string rows_;
};

std::string Number(std::uint64_t number) { return std::to_string(number); }

std::string Word(std::mt19937_64& random, std::size_t shortest, std::size_t longest) {
  std::string word(shortest + random() % (longest - shortest + 1), ' ');
  for (char& c : word) c = static_cast<char>('a' + random() % 26);
  return word;
}

Fill InTransaction(Fill fill) {
  return [fill = std::move(fill)](test::SqliteFile& database) {
    database.Run("begin");
    fill(database);
    database.Run("commit");
  };
}

void AddGroup(Inserter& groups, const Range& range, const std::string& name, bool system,
              bool enabled) {
  groups.Add(PackedDigits(range.start) + "," + PackedDigits(range.end) + ",'" + name + "'," +
             Number(system ? 1 : 0) + "," + Number(enabled ? 1 : 0));
}

constexpr std::string_view kGroupColumns =
    "IPAddressGroups (IPRangeStart, IPRangeEnd, IPAddressGroupName, System, Enabled)";

}  // namespace

std::string DottedQuad(std::uint32_t address) {
  return Number(address >> 24) + "." + Number(address >> 16 & 0xFF) + "." +
         Number(address >> 8 & 0xFF) + "." + Number(address & 0xFF);
}

std::string PackedDigits(std::uint32_t address) {
  return Number((address >> 24) * std::uint64_t{1000000000} +
                (address >> 16 & 0xFF) * std::uint64_t{1000000} +
                (address >> 8 & 0xFF) * std::uint64_t{1000} + (address & 0xFF));
}

Fill Ports(std::size_t count) {
  return InTransaction([count](test::SqliteFile& database) {
    std::mt19937_64 random(kSeed);
    Inserter ports(database, "ServicePorts (Port, ServiceName, System, Enabled)");
    for (std::size_t port = 1; port <= count; ++port) {
      ports.Add(Number(port) + ",'" + Word(random, 4, 24) + "'," + Number(random() % 2) + "," +
                Number(random() % 2));
    }
  });
}

std::vector<Range> GroupRanges(std::size_t count) {
  constexpr std::uint32_t kFirst = 0x01000000;
  constexpr std::uint32_t kLast = 0xDF000000;
  const auto stride = static_cast<std::uint32_t>((kLast - kFirst) / (count + 2));
  std::mt19937_64 random(kSeed);
  std::vector<Range> ranges;
  ranges.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto start = static_cast<std::uint32_t>(kFirst + i * stride + random() % (stride / 2));
    ranges.push_back({start, start + stride});
  }
  return ranges;
}

Fill Groups(std::size_t count) {
  return InTransaction([count](test::SqliteFile& database) {
    std::mt19937_64 random(kSeed);
    Inserter groups(database, kGroupColumns);
    for (const Range& range : GroupRanges(count)) {
      const std::string name = "group " + Word(random, 8, 32);
      AddGroup(groups, range, name, random() % 2 == 0, random() % 2 == 0);
    }
  });
}

Fill Interfaces(std::size_t count) {
  return InTransaction([count](test::SqliteFile& database) {
    constexpr std::size_t kInterfacesOfNode = 48;
    std::mt19937_64 random(kSeed);
    const std::size_t nodes = count / kInterfacesOfNode + 1;
    Inserter node_rows(database, "Nodes (NodeID, Caption)");
    for (std::size_t node = 1; node <= nodes; ++node) {
      node_rows.Add(Number(node) + ",'" + Word(random, 4, 12) + "-" + Number(node) + "'");
    }
    Inserter interfaces(database, "Interfaces (InterfaceID, NodeID, Caption)");
    Inserter sources(database, "NetFlowSources (InterfaceID)");
    for (std::size_t id = 1; id <= count; ++id) {
      interfaces.Add(Number(id) + "," + Number(1 + (id - 1) / kInterfacesOfNode) +
                     ",'GigabitEthernet" + Number(random() % 8) + "/" +
                     Number(id % kInterfacesOfNode) + " " + Word(random, 4, 16) + "'");
      if (random() % 10 == 0) sources.Add(Number(id));
    }
  });
}

Fill Endpoints(std::size_t count) {
  return InTransaction([count](test::SqliteFile& database) {
    constexpr std::uint32_t kSpan = 1U << 27;
    const Range all{0x0A000000, 0x0A000000 + kSpan - 1};
    constexpr std::uint32_t kStep = kSpan / 512;
    Inserter groups(database, kGroupColumns);
    AddGroup(groups, all, kWidestGroup, false, true);
    for (std::uint32_t i = 1; i < kOverlappingGroups / 2; ++i) {
      AddGroup(groups, {all.start - kStep + i, all.start + i * kStep}, "front " + Number(i), false,
               true);
    }
    for (std::uint32_t i = 0; i < kOverlappingGroups / 2; ++i) {
      AddGroup(groups, {all.end - (kOverlappingGroups / 2 - i) * kStep, all.end + 1 + i},
               "back " + Number(i), false, true);
    }
    Inserter endpoints(database, "FlowCorrelation (IPAddress, IPAddressSort, FullHostname)");
    for (std::size_t i = 0; i < count; ++i) {
      const auto address = static_cast<std::uint32_t>(all.start + std::uint64_t{kSpan} * i / count);
      endpoints.Add("'" + DottedQuad(address) + "'," + PackedDigits(address) + ",'host-" +
                    Number(i) + ".example.net'");
    }
  });
}

}  // namespace quillan::bench
