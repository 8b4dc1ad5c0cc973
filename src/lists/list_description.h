#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "lists/list_filter.h"
#include "platform/ado/value.h"
#include "platform/grid/grid.h"

namespace quillan {

/// A column of a list. Column 0 is the check column: its field says whether the box is checked.
struct ListColumn {
  std::string_view header;
  std::string_view width_text;  ///< The column is as wide as this text.
  Alignment alignment;
  std::string_view field;                              ///< The field of the list's query.
  std::string (*format)(const ado::Value&) = nullptr;  ///< The field's text; null: as it is.
  bool stretches = false;                              ///< See GridColumn.
  bool digits_by_value = false;
};

/// What one list shows, and of what table.
struct ListDescription {
  std::span<const ListColumn> columns;
  std::string_view query;
  int key_columns = 1;                 ///< The columns after the check column that identify a row.
  std::string_view system_field = {};  ///< True for system-defined rows; empty: no row is marked.
  int editable_column = 0;             ///< 0: none.
  std::string_view last_update_setting =
      {};  ///< The global setting of the last change; empty: none.
  FilterKind filter = FilterKind::kText;
  bool finds_conflicts = true;    ///< A save compares the stored rows with the loaded ones first.
  bool batch = false;             ///< Each row is one statement, and several may be sent at once.
  bool stops_at_failure = false;  ///< A row that fails ends the whole save.
};

enum class CommandPlace { kTop, kBottom };
enum class CommandEnabled { kAlways, kOnDataRow };
enum class CommandKey { kNone, kInsert, kDelete };

/// A button beside a list.
struct ListCommand {
  std::string_view name;
  std::string caption;
  CommandPlace place;
  CommandEnabled enabled;
  std::function<void()> run;
  CommandKey key = CommandKey::kNone;  ///< Presses the button while the list has the focus.
};

}  // namespace quillan
