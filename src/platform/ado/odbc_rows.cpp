#include "platform/ado/odbc_rows.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>

#include "platform/ado/error.h"
#include "platform/text/encoding.h"

namespace quillan::ado {
namespace {

constexpr size_t kBlockBytes = size_t{256} << 10;
constexpr size_t kMostRows = 1024;
// The widest text with a limit that SQL Server has.
constexpr SQLULEN kMostCharacters = 8000;
// SQLite does not enforce declared lengths: strings get this much room, and more when needed.
constexpr size_t kSqliteTextBytes = 256;

enum class Kind { kWhole, kReal, kTimestamp, kText, kBytes };

Kind KindOf(const OdbcColumn& column, bool sqlite) {
  constexpr SQLULEN kMostDigits = 18;  // What fits 64 bits; more of them are kept as text.
  switch (column.type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return Kind::kWhole;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      if (column.scale != 0) return Kind::kReal;
      return column.size <= kMostDigits ? Kind::kWhole : Kind::kText;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return Kind::kReal;
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
      return sqlite ? Kind::kText : Kind::kTimestamp;  // SQLite's are whatever text was stored.
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
      return Kind::kBytes;
    default:
      return Kind::kText;
  }
}

// The length of "2007-06-01 12:00:00".
constexpr size_t kSecondsLength = 19;

bool IsCharacterType(SQLSMALLINT type) {
  return type == SQL_CHAR || type == SQL_VARCHAR || type == SQL_WCHAR || type == SQL_WVARCHAR;
}

// A column of the block: the room for `rows` values one after the other, and their lengths.
struct BoundColumn {
  std::string name;
  Kind kind = Kind::kText;
  SQLSMALLINT c_type = SQL_C_WCHAR;
  int fraction_digits = 0;  // Of a timestamp.
  size_t characters = 0;    // The most that a text may have; 0: without limit, or no text.
  size_t bytes = 0;  // For one value, a text's end mark included; 0: without limit, so not bound.
  std::unique_ptr<char[]> values;
  std::vector<SQLLEN> lengths;

  size_t MarkBytes() const {
    return c_type == SQL_C_WCHAR ? sizeof(char16_t) : c_type == SQL_C_CHAR ? 1 : 0;
  }
  bool IsSized() const { return kind == Kind::kText || kind == Kind::kBytes; }
};

class RowReader {
 public:
  explicit RowReader(const OdbcStatement& statement) : statement_(statement) {
    const SQLSMALLINT count = statement.ColumnCount();
    for (SQLSMALLINT i = 1; i <= count; ++i) Add(statement.Column(i));
    // What follows a column that is not bound cannot be bound either: drivers give such values
    // from left to right.
    const auto unbound = std::find_if(columns_.begin(), columns_.end(),
                                      [](const BoundColumn& column) { return column.bytes == 0; });
    bound_ = static_cast<size_t>(unbound - columns_.begin());
  }

  void Read(size_t block_rows, const BlockHandler& on_block) {
    std::vector<std::string> names;
    std::vector<size_t> sizes;
    for (const BoundColumn& column : columns_) {
      names.push_back(column.name);
      sizes.push_back(column.characters);
    }
    RowStore rows(names, sizes);
    SetAttribute(SQL_ATTR_ROWS_FETCHED_PTR, &fetched_);
    Bind();
    SQLULEN first = 1;
    for (SQLRETURN result = Fetch(); result != SQL_NO_DATA; result = Fetch()) {
      // A block with a value cut short is read again with more room.
      while (Widen()) {
        Bind();
        Check(SQLFetchScroll(statement_.handle(), SQL_FETCH_ABSOLUTE, static_cast<SQLLEN>(first)));
      }
      for (size_t row = 0; row < fetched_; ++row) Store(row, rows);
      first += fetched_;
      if (rows.row_count() < block_rows) continue;
      if (!on_block(std::move(rows))) return;
      rows = RowStore(names, sizes);
    }
    on_block(std::move(rows));
  }

 private:
  void Check(SQLRETURN result) const { statement_.Check(result); }

  void SetAttribute(SQLINTEGER attribute, SQLPOINTER value) const {
    Check(SQLSetStmtAttr(statement_.handle(), attribute, value, 0));
  }

  const OdbcApi& api() const { return statement_.session().api(); }

  void Add(OdbcColumn described) {
    const bool sqlite = api().IsSqlite();
    BoundColumn column;
    column.kind = KindOf(described, sqlite);
    column.name = std::move(described.name);
    switch (column.kind) {
      case Kind::kWhole:
        column.c_type = SQL_C_SBIGINT;
        column.bytes = sizeof(SQLBIGINT);
        break;
      case Kind::kReal:
        column.c_type = SQL_C_DOUBLE;
        column.bytes = sizeof(double);
        break;
      case Kind::kTimestamp:
        column.c_type = SQL_C_TYPE_TIMESTAMP;
        column.bytes = sizeof(SQL_TIMESTAMP_STRUCT);
        column.fraction_digits = described.scale;
        break;
      case Kind::kText:
      case Kind::kBytes:
        column.c_type = api().TextType();
        if (column.kind == Kind::kBytes) column.c_type = SQL_C_BINARY;
        if (IsCharacterType(described.type) && described.size <= kMostCharacters) {
          column.characters = described.size;
        }
        if (sqlite) {
          column.bytes = kSqliteTextBytes;
        } else if (described.size > 0 && described.size <= kMostCharacters) {
          // A number's digits may come with a sign and a point; then the end mark.
          column.bytes = column.kind == Kind::kBytes ? described.size
                                                     : (described.size + 3) * column.MarkBytes();
        }
        break;
    }
    columns_.push_back(std::move(column));
  }

  // Makes room for as many rows as a block takes and tells the driver where.
  void Bind() {
    size_t row_bytes = 0;
    for (size_t i = 0; i < bound_; ++i) row_bytes += columns_[i].bytes + sizeof(SQLLEN);
    const size_t rows =
        bound_ < columns_.size() ? 1 : std::clamp(kBlockBytes / row_bytes, size_t{1}, kMostRows);
    status_.resize(rows);
    SetAttribute(SQL_ATTR_ROW_ARRAY_SIZE, AttributeValue(rows));
    SetAttribute(SQL_ATTR_ROW_STATUS_PTR, status_.data());
    for (size_t i = 0; i < bound_; ++i) {
      BoundColumn& column = columns_[i];
      column.values = std::make_unique_for_overwrite<char[]>(rows * column.bytes);
      column.lengths.resize(rows);
      Check(SQLBindCol(statement_.handle(), static_cast<SQLUSMALLINT>(i + 1), column.c_type,
                       column.values.get(), static_cast<SQLLEN>(column.bytes),
                       column.lengths.data()));
    }
  }

  SQLRETURN Fetch() {
    fetched_ = 0;
    const SQLRETURN result = SQLFetch(statement_.handle());
    Check(result);
    if (result == SQL_SUCCESS_WITH_INFO &&
        std::find(status_.begin(), status_.begin() + static_cast<std::ptrdiff_t>(fetched_),
                  SQL_ROW_ERROR) != status_.begin() + static_cast<std::ptrdiff_t>(fetched_)) {
      Check(SQL_ERROR);
    }
    return result;
  }

  // Gives every column that cuts a value of this block short the room that it needs; false when
  // all values are whole.
  bool Widen() {
    bool widened = false;
    for (size_t i = 0; i < bound_; ++i) {
      BoundColumn& column = columns_[i];
      if (!column.IsSized() || fetched_ == 0) continue;
      const SQLLEN longest = *std::max_element(
          column.lengths.begin(), column.lengths.begin() + static_cast<std::ptrdiff_t>(fetched_));
      const size_t needed = static_cast<size_t>(std::max(longest, SQLLEN{0})) + column.MarkBytes();
      if (needed <= column.bytes) continue;
      if (!api().IsSqlite()) {
        throw Error(0, "22001",
                    "A value of the column \"" + column.name + "\" is longer than the column.");
      }
      column.bytes = std::max(needed, 2 * column.bytes);
      widened = true;
    }
    return widened;
  }

  void Store(size_t row, RowStore& rows) {
    for (size_t i = 0; i < columns_.size(); ++i) {
      const BoundColumn& column = columns_[i];
      if (i >= bound_) {
        StoreUnbound(static_cast<SQLUSMALLINT>(i + 1), column, rows);
      } else {
        StoreValue(column, column.values.get() + row * column.bytes, column.lengths[row], rows);
      }
    }
    rows.EndRow();
  }

  void StoreValue(const BoundColumn& column, const char* value, SQLLEN length, RowStore& rows) {
    if (length == SQL_NULL_DATA) {
      rows.AddNull();
      return;
    }
    switch (column.kind) {
      case Kind::kWhole: {
        std::int64_t whole = 0;
        std::memcpy(&whole, value, sizeof whole);
        rows.AddWhole(whole);
        break;
      }
      case Kind::kReal: {
        double real = 0;
        std::memcpy(&real, value, sizeof real);
        rows.AddReal(real);
        break;
      }
      case Kind::kTimestamp:
        StoreTimestamp(value, column.fraction_digits, rows);
        break;
      case Kind::kText:
      case Kind::kBytes:
        if (column.c_type == SQL_C_WCHAR) {
          StoreUtf16(value, static_cast<size_t>(length) / sizeof(char16_t), rows);
        } else {
          rows.AddText({value, static_cast<size_t>(length)});
        }
        break;
    }
  }

  // With as many digits of the fraction as the column has: what is written back must find the row.
  static void StoreTimestamp(const char* value, int fraction_digits, RowStore& rows) {
    SQL_TIMESTAMP_STRUCT time{};
    std::memcpy(&time, value, sizeof time);
    std::array<char, 64> text{};
    int length =
        std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d.%09u", time.year,
                      time.month, time.day, time.hour, time.minute, time.second, time.fraction);
    constexpr int kMostDigits = 9;  // The driver counts nanoseconds.
    length -= kMostDigits - std::clamp(fraction_digits, 0, kMostDigits);
    std::string_view written(text.data(), static_cast<size_t>(length));
    if (written.find_first_not_of('0', kSecondsLength + 1) == std::string_view::npos) {
      written = written.substr(0, kSecondsLength);
    }
    rows.AddText(written);
  }

  void StoreUtf16(const char* bytes, size_t units, RowStore& rows) {
    const auto* const first = reinterpret_cast<const char16_t*>(bytes);
    char16_t all = 0;
    for (size_t i = 0; i < units; ++i) all = static_cast<char16_t>(all | first[i]);
    if (all >= 0x80) {
      rows.AddText(text::Utf16ToUtf8({first, units}));
      return;
    }
    ascii_.resize(units);
    for (size_t i = 0; i < units; ++i) ascii_[i] = static_cast<char>(first[i]);
    rows.AddText(ascii_);
  }

  // Reads a value piece by piece.
  void StoreUnbound(SQLUSMALLINT number, const BoundColumn& column, RowStore& rows) {
    alignas(char16_t) std::array<char, 8192> piece{};
    std::string value;
    bool any = false;
    for (;;) {
      SQLLEN length = 0;
      const SQLRETURN result = SQLGetData(statement_.handle(), number, column.c_type, piece.data(),
                                          piece.size(), &length);
      Check(result);
      if (length == SQL_NULL_DATA || result == SQL_NO_DATA) break;
      const size_t room = piece.size() - column.MarkBytes();
      const bool whole = length >= 0 && static_cast<size_t>(length) <= room;
      if (!column.IsSized()) {
        StoreValue(column, piece.data(), length, rows);
        return;
      }
      value.append(piece.data(), whole ? static_cast<size_t>(length) : room);
      any = true;
      if (whole) break;
    }
    if (any) {
      StoreValue(column, value.data(), static_cast<SQLLEN>(value.size()), rows);
    } else {
      rows.AddNull();
    }
  }

  const OdbcStatement& statement_;
  std::vector<BoundColumn> columns_;
  size_t bound_ = 0;  // How many columns from the left are bound.
  std::vector<SQLUSMALLINT> status_;
  SQLULEN fetched_ = 0;
  std::string ascii_;
};

}  // namespace

RowStore ReadRows(const OdbcStatement& statement) {
  RowStore all({});
  RowReader(statement).Read(std::numeric_limits<size_t>::max(), [&](RowStore rows) {
    all = std::move(rows);
    return true;
  });
  return all;
}

void ReadRowsInBlocks(const OdbcStatement& statement, const BlockHandler& on_block) {
  RowReader(statement).Read(kBlockRows, on_block);
}

}  // namespace quillan::ado
