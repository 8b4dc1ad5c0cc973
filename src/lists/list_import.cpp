#include "lists/list_import.h"

#include <algorithm>
#include <array>

#include "platform/text/ascii.h"
#include "platform/text/case_fold.h"
#include "platform/text/delimited_text.h"

namespace quillan {
namespace {

using text::DelimitedRecord;
using text::TrimSpaces;

// Words for a check state, those for checked first. Digits are accepted where a header or the
// column's place says that they are one.
constexpr std::array<std::pair<std::string_view, std::string_view>, 6> kCheckWords = {
    {{"yes", "no"},
     {"true", "false"},
     {"on", "off"},
     {"enabled", "disabled"},
     {"checked", "unchecked"},
     {"1", "0"}}};

std::optional<bool> ReadCheckWord(std::string_view word) {
  for (const auto& [checked, unchecked] : kCheckWords) {
    if (text::EqualsIgnoringCase(word, checked)) return true;
    if (text::EqualsIgnoringCase(word, unchecked)) return false;
  }
  return std::nullopt;
}

// The positions of the columns in a record; -1 for a column that it does not have.
struct Places {
  int key = 0;
  int end = -1;
  int name = -1;
  int enabled = -1;
  int width = 0;  // Fields after these belong to no column.
};

int Find(const DelimitedRecord& header, std::span<const std::string_view> names) {
  for (size_t i = 0; i < header.fields.size(); ++i) {
    const std::string name = text::FoldCase(TrimSpaces(header.fields[i]));
    if (std::find(names.begin(), names.end(), name) != names.end()) return static_cast<int>(i);
  }
  return -1;
}

// The columns that the first record names; nothing if it is no header.
std::optional<Places> ReadHeader(const DelimitedRecord& first, const ImportColumns& columns) {
  const int key = Find(first, columns.key);
  if (key < 0 || std::any_of(first.fields.begin(), first.fields.end(), columns.looks_like_key)) {
    return std::nullopt;
  }
  return Places{key, Find(first, columns.end), Find(first, columns.name),
                Find(first, columns.enabled), static_cast<int>(first.fields.size())};
}

// The columns of a record in a file without a header.
Places UsualPlaces(const DelimitedRecord& record, bool check_first, const ImportColumns& columns) {
  const auto& fields = record.fields;
  int next = check_first ? 1 : 0;
  Places places{.key = next++, .enabled = check_first ? 0 : -1};
  const auto end = static_cast<size_t>(next);
  if (columns.has_end != nullptr && end < fields.size() &&
      columns.has_end(fields[end - 1], fields[end])) {
    places.end = next++;
  }
  places.name = next++;
  if (!check_first) places.enabled = next++;
  places.width = next;
  return places;
}

bool ChecksComeFirst(const DelimitedRecord& first, const ImportColumns& columns) {
  return first.fields.size() > 1 && ReadCheckWord(TrimSpaces(first.fields[0])) &&
         !columns.looks_like_key(first.fields[0]) && columns.looks_like_key(first.fields[1]);
}

ImportRecord TakeApart(DelimitedRecord& source, const Places& places) {
  const auto field = [&](int place) {
    const auto index = static_cast<size_t>(place);
    return place >= 0 && index < source.fields.size() ? &source.fields[index] : nullptr;
  };
  ImportRecord record;
  record.line = source.line;
  if (const auto* key = field(places.key)) record.key = TrimSpaces(*key);
  if (const auto* end = field(places.end)) record.end = TrimSpaces(*end);
  if (auto* name = field(places.name)) record.name = std::move(*name);
  if (const auto* word = field(places.enabled); word != nullptr && !TrimSpaces(*word).empty()) {
    record.enabled = ReadCheckWord(TrimSpaces(*word));
    if (!record.enabled) record.fault = "\"" + *word + "\" is neither yes nor no.";
  }
  for (size_t i = static_cast<size_t>(places.width); i < source.fields.size(); ++i) {
    if (!source.fields[i].empty()) {
      record.fault = "The line has more fields than there are columns.";
    }
  }
  if (record.name && record.name->find('\0') != std::string::npos) {
    record.fault = "The description holds a NUL character.";
  }
  return record;
}

void AppendRow(const Grid& grid, int row, char separator, std::string& text) {
  std::vector<std::string_view> fields;
  for (int column = 0; column < grid.Columns(); ++column) {
    if (row < Grid::kFixedRows) {
      fields.push_back(TrimSpaces(grid.Text(row, column)));
    } else {
      fields.push_back(column == 0 ? CheckWord(grid.Check(row, column)) : grid.Text(row, column));
    }
  }
  text::AppendDelimitedRecord(fields, separator, text);
}

}  // namespace

int ImportPlan::Count(ImportVerdict verdict) const {
  return static_cast<int>(std::count_if(
      lines.begin(), lines.end(), [&](const ImportLine& line) { return line.verdict == verdict; }));
}

bool ImportPlan::ChangesNothing() const {
  return Count(ImportVerdict::kNew) == 0 && Count(ImportVerdict::kChanged) == 0 &&
         deleted_rows.empty();
}

std::vector<ImportRecord> ReadImport(std::string_view bytes, const ImportColumns& columns,
                                     std::string& error) {
  const std::string utf8 = text::DecodeTable(bytes);
  text::DelimitedReader reader(utf8);
  std::vector<ImportRecord> records;
  std::optional<Places> header;
  bool check_first = false;
  bool first = true;
  for (DelimitedRecord record; reader.Next(record); first = false) {
    if (first) {
      header = ReadHeader(record, columns);
      if (header) continue;
      check_first = ChecksComeFirst(record, columns);
    }
    records.push_back(
        TakeApart(record, header ? *header : UsualPlaces(record, check_first, columns)));
  }
  if (reader.error()) {
    error = "Line " + std::to_string(reader.error()->line) + ": " + reader.error()->message;
    records.clear();
  }
  return records;
}

std::string_view CheckWord(CheckState state) {
  switch (state) {
    case CheckState::kChecked:
      return "yes";
    case CheckState::kUnchecked:
      return "no";
    case CheckState::kNone:
      break;
  }
  return "deleted";
}

std::string ExportList(const Grid& grid, char separator) {
  std::string text;
  for (int row = 0; row < grid.Rows(); ++row) {
    if (grid.IsShown(row)) AppendRow(grid, row, separator, text);
  }
  return text;
}

std::string SelectedRowsText(const Grid& grid) {
  std::string text;
  for (const int row : grid.SelectedRows()) AppendRow(grid, row, '\t', text);
  return text;
}

}  // namespace quillan
