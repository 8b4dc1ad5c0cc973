#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lists/checkable_list.h"
#include "lists/list_import.h"

namespace quillan {

/// The words of a list to which rows can be added.
struct EditableListTexts {
  std::string_view items;     ///< "Ports": what the buttons check and delete.
  std::string_view add_name;  ///< The add button's object name and caption.
  std::string_view add_caption;
  std::string_view delete_name;  ///< The delete button's object name.
  std::string_view delete_question;
  // The warning that a system-defined row stays: its first line with the row's name between the
  // first two pieces, its second line, and the question that follows with several rows selected.
  std::string_view system_before;
  int system_name_column;
  std::string_view system_after;
  std::string_view system_uncheck;
  std::string_view system_ask_again;
};

/// A list to which the user adds rows and from which the user deletes rows of the user's own;
/// system-defined rows can only be unchecked.
class EditableList : public CheckableList {
 public:
  EditableList(const ListDescription& description, const EditableListTexts& texts,
               const ListServices& services)
      : CheckableList(description, services), texts_(texts) {}

  std::vector<ListCommand> Commands() override;

  /// Judges the file `bytes` (see ReadImport) line by line against the rows as they stand, pending
  /// edits included, by the rules for new rows.
  virtual ImportPlan PlanImport(std::string_view bytes, ImportMode mode) = 0;
  /// Makes the accepted lines and the deletions of a plan pending edits. Refused lines are passed
  /// over.
  void ApplyImport(const ImportPlan& plan);

 protected:
  /// Asks the user for a new row and adds it.
  virtual void Add() = 0;
  /// Adds a checked, user-defined row of state kNew with `texts` from column 1 on, makes it the
  /// current row and returns its number.
  int AddRow(const std::vector<std::string>& texts);
  /// Called after an import has changed the rows.
  virtual void OnImported() {}

 private:
  void DeleteSelected();
  bool WarnOfSystemRow(int row, bool several);

  EditableListTexts texts_;
};

}  // namespace quillan
