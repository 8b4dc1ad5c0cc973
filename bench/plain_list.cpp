// Prints the interfaces of a suite database as CSV, with the driver's own functions alone. No name
// in the data of the benchmarks needs quotes.

#include <cstdio>
#include <string>

#include <sqlite3.h>

int main(int argc, char** argv) {
  sqlite3* database = nullptr;
  sqlite3_stmt* rows = nullptr;
  if (argc != 2 || sqlite3_open(argv[1], &database) != SQLITE_OK) return 1;
  const char* query =
      "SELECT s.InterfaceID IS NOT NULL, n.Caption, i.Caption, i.InterfaceID FROM Interfaces i "
      "INNER JOIN Nodes n ON i.NodeID = n.NodeID "
      "LEFT JOIN NetflowSources s on i.InterfaceID = s.InterfaceID";
  if (sqlite3_prepare_v2(database, query, -1, &rows, nullptr) != SQLITE_OK) return 1;
  const auto text = [&](int column) {
    return std::string_view(reinterpret_cast<const char*>(sqlite3_column_text(rows, column)),
                            static_cast<std::size_t>(sqlite3_column_bytes(rows, column)));
  };
  std::string buffer = "Monitored,Node Name,Interface Name,Interface Id\r\n";
  int status = SQLITE_ROW;
  while ((status = sqlite3_step(rows)) == SQLITE_ROW) {
    buffer += sqlite3_column_int(rows, 0) != 0 ? "yes" : "no";
    for (int column = 1; column < 4; ++column) buffer.append(",").append(text(column));
    buffer += "\r\n";
    if (buffer.size() < 1 << 16) continue;
    std::fwrite(buffer.data(), 1, buffer.size(), stdout);
    buffer.clear();
  }
  std::fwrite(buffer.data(), 1, buffer.size(), stdout);
  return status == SQLITE_DONE ? 0 : 1;
}
