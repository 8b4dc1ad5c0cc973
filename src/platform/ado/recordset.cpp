#include "platform/ado/recordset.h"

#include "platform/ado/error.h"
#include "platform/ado/write_back.h"
#include "platform/text/ascii.h"

namespace quillan::ado {

ado::Value Field::Value() const {
  if (rows_->Eof()) throw Error(kNoCurrentRow, "", "There is no current row.");
  const auto& edit = rows_->edits_[column_];
  return edit ? ToView(*edit) : rows_->current_[column_];
}

void Field::SetValue(const ado::Value& value) {
  if (rows_->Eof()) throw Error(kNoCurrentRow, "", "There is no current row.");
  rows_->edits_[column_] = ToOwned(value);
}

Recordset::Recordset(RowStore rows)
    : rows_(std::move(rows)), current_(rows_.columns().size()), edits_(rows_.columns().size()) {
  ReadRow();
}

Recordset::Recordset(RowStore rows, std::weak_ptr<Driver> driver, std::string_view query)
    : Recordset(std::move(rows)) {
  driver_ = std::move(driver);
  query_ = query;
}

void Recordset::ReadRow() {
  if (!Eof()) rows_.Read(position_, current_);
}

void Recordset::MoveFirst() {
  appending_ = false;
  position_ = 0;
  edits_.assign(edits_.size(), std::nullopt);
  ReadRow();
}

void Recordset::MoveNext() {
  if (Eof()) throw Error(kNoCurrentRow, "", "There is no current row.");
  if (appending_) {
    appending_ = false;
  } else {
    ++position_;
  }
  edits_.assign(edits_.size(), std::nullopt);
  ReadRow();
}

size_t Recordset::Index(std::string_view name) const {
  const auto& columns = rows_.columns();
  for (size_t i = 0; i < columns.size(); ++i) {
    if (text::EqualsIgnoringCase(columns[i], name)) return i;
  }
  throw Error(kUnknownField, "", "The rows have no column \"" + std::string(name) + "\".");
}

void Recordset::AddNew() {
  appending_ = true;
  current_.assign(current_.size(), Null{});
  edits_.assign(edits_.size(), std::nullopt);
}

void Recordset::Update() {
  if (Eof()) throw Error(kNoCurrentRow, "", "There is no current row.");
  const auto driver = driver_.lock();
  if (!query_) throw Error(kReadOnlyRows, "", "The rows were opened for reading only.");
  if (!driver) throw Error(kObjectClosed, "", "The database connection is closed.");
  const Change change{rows_.columns(), current_, edits_};
  if (appending_) {
    InsertRow(*driver, SourceTable(*query_), change);
  } else {
    UpdateRow(*driver, SourceTable(*query_), change);
  }
  // The written values are the row's values from here on; as a copy in the store they outlive the
  // edits.
  for (size_t i = 0; i < current_.size(); ++i) {
    rows_.Add(edits_[i] ? ToView(*edits_[i]) : current_[i]);
  }
  rows_.EndRow();
  if (appending_) {
    position_ = rows_.row_count() - 1;
    appending_ = false;
    ReadRow();
  } else {
    rows_.ReplaceByLast(position_);
    ReadRow();
  }
  edits_.assign(edits_.size(), std::nullopt);
}

void Recordset::Close() {
  rows_ = RowStore({});
  current_.clear();
  edits_.clear();
  position_ = 0;
  appending_ = false;
  query_.reset();
}

}  // namespace quillan::ado
