#include "dialog/conflict_form.h"

#include "dialog/table_dialog.h"
#include "platform/qt/qt_text.h"

namespace quillan {
namespace {

QString Tr(const char* text) { return TableDialog::tr(text); }

QString Describe(const Conflict& conflict) {
  switch (conflict.kind) {
    case ConflictKind::kChanged:
      return Tr("Changed by someone else");
    case ConflictKind::kGone:
      // A new row that was deleted and then kept after all has never been stored.
      return conflict.loaded.empty() ? Tr("Not in the database") : Tr("Deleted by someone else");
    case ConflictKind::kTaken:
      return Tr("Added by someone else");
    case ConflictKind::kNested:
      break;
  }
  return Tr("Nested with a new group");
}

}  // namespace

ConflictAnswer AskAboutConflicts(const std::vector<PageConflict>& conflicts, QWidget* parent) {
  TableDialog form(
      "ConflictForm", Tr("Changed in the Meantime"),
      Tr("The database has changed since these rows were loaded. Nothing has been "
         "written yet.\n"
         "Overwrite writes your values. Keep Theirs drops your changes of these rows "
         "and saves the others. Cancel saves nothing."),
      {Tr("Page"), Tr("Row"), Tr("What happened"), Tr("As loaded"), Tr("Theirs"), Tr("Yours")},
      parent);
  std::vector<QStringList> lines;
  lines.reserve(conflicts.size());
  for (const auto& [page, conflict] : conflicts) {
    lines.push_back({page, ToQString(conflict.name), Describe(conflict), ToQString(conflict.loaded),
                     ToQString(conflict.theirs), ToQString(conflict.ours)});
  }
  form.SetRows(lines);
  ConflictAnswer answer = ConflictAnswer::kCancel;
  const auto add = [&](const char* name, const QString& caption, ConflictAnswer means) {
    QObject::connect(form.AddButton(name, caption), &QPushButton::clicked, &form,
                     [&form, &answer, means] {
                       answer = means;
                       form.accept();
                     });
  };
  add("cmdOverwrite", Tr("Overwrite"), ConflictAnswer::kOverwrite);
  add("cmdKeepTheirs", Tr("Keep Theirs"), ConflictAnswer::kKeepTheirs);
  add("cmdCancel", Tr("Cancel"), ConflictAnswer::kCancel);
  form.exec();
  return answer;
}

}  // namespace quillan
