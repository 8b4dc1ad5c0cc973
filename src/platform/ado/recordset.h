#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/driver.h"

namespace quillan::ado {

class Recordset;

/// One column of a recordset, looked up once: reads and writes the value of whichever row is
/// current. Valid as long as its recordset is open.
class Field {
 public:
  /// The current row's value, or what was last set and not yet written back. A text is valid until
  /// the field is set or the recordset is closed. Throws `Error` when there is no current row.
  ado::Value Value() const;
  /// Sets the value that the next `Recordset::Update` writes.
  void SetValue(const ado::Value& value);

 private:
  friend class Recordset;
  Field(Recordset& rows, size_t column) : rows_(&rows), column_(column) {}

  Recordset* rows_;
  size_t column_;
};

/// The rows of a query, held in memory, walked forward; one that was opened for writing can append
/// a row or write its current row back. Every member may throw `Error`.
class Recordset {
 public:
  /// A read-only recordset.
  explicit Recordset(RowStore rows);
  /// A recordset that writes back through `driver` into the table that `query` reads.
  Recordset(RowStore rows, std::weak_ptr<Driver> driver, std::string_view query);

  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;

  /// Whether the current position is past the last row.
  bool Eof() const { return !appending_ && position_ >= rows_.row_count(); }
  void MoveNext();
  void MoveFirst();

  /// How many rows there are, wherever the current position is.
  size_t RowCount() const { return rows_.row_count(); }

  /// The column named `name`, without regard to case.
  Field Fields(std::string_view name) { return {*this, Index(name)}; }
  /// The names of the columns, in the order of the query.
  const std::vector<std::string>& FieldNames() const { return rows_.columns(); }

  /// The most characters that a text in the column `name` may have; 0 where there is no limit.
  size_t ColumnSize(std::string_view name) const { return rows_.sizes()[Index(name)]; }

  /// Starts a new row, whose fields are Null until they are set; `Update` stores it.
  void AddNew();
  /// Writes the set fields back: a new row is inserted; the current row is found by its table's
  /// primary key, or by all its original values where there is none, and must be exactly one row.
  void Update();
  /// Drops the rows; afterwards nothing can be read.
  void Close();

 private:
  friend class Field;

  void ReadRow();
  size_t Index(std::string_view name) const;

  RowStore rows_;
  std::weak_ptr<Driver> driver_;
  std::optional<std::string> query_;  // Set when the rows can be written back.
  size_t position_ = 0;
  bool appending_ = false;
  std::vector<Value> current_;
  std::vector<std::optional<OwnedValue>> edits_;
};

}  // namespace quillan::ado
