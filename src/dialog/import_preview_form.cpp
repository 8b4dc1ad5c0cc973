#include "dialog/import_preview_form.h"

#include <utility>

#include <QVBoxLayout>

#include "dialog/failures.h"
#include "dialog/lengths.h"
#include "dialog/page_parts.h"
#include "platform/qt/qt_text.h"
#include "platform/text/ascii.h"

namespace quillan {
namespace {

constexpr int kWidth = 15000;  // Twips.

// A refused line can hold anything; what is longer is cut.
constexpr qsizetype kLongestText = 300;

QString Shown(std::string_view text) {
  const QString whole = ToQString(text);
  return whole.size() <= kLongestText ? whole : whole.left(kLongestText) + QChar(0x2026);
}

QString VerdictText(ImportVerdict verdict) {
  switch (verdict) {
    case ImportVerdict::kNew:
      return ImportPreviewForm::tr("New");
    case ImportVerdict::kChanged:
      return ImportPreviewForm::tr("Changed");
    case ImportVerdict::kUnchanged:
      return ImportPreviewForm::tr("Unchanged");
    case ImportVerdict::kRefused:
      break;
  }
  return ImportPreviewForm::tr("Refused");
}

QString Header(const CheckableList& list, int column) {
  return ToQString(
      text::TrimSpaces(list.Description().columns[static_cast<size_t>(column)].header));
}

QString Word(bool checked) {
  return ToQString(CheckWord(checked ? CheckState::kChecked : CheckState::kUnchecked));
}

}  // namespace

ImportPreviewForm::ImportPreviewForm(EditableList& list, std::string bytes, QString source,
                                     const Services& services, QWidget* parent)
    : TableDialog("ImportPreviewForm", tr("Import Preview"), {},
                  {tr("Line"), tr("Verdict"), tr("Row"),
                   Header(list, list.Description().editable_column), Header(list, 0), tr("Reason")},
                  parent),
      list_(list),
      bytes_(std::move(bytes)),
      source_(std::move(source)),
      services_(services),
      summary_(NewParagraph({}, this)),
      replace_(new QCheckBox(tr("Delete the rows that are not among these lines"), this)),
      refused_only_(new QCheckBox(tr("Show the refused lines only"), this)),
      add_(AddButton("cmdAdd", {})) {
  summary_->setObjectName(QStringLiteral("Summary"));
  replace_->setObjectName(QStringLiteral("Replace"));
  refused_only_->setObjectName(QStringLiteral("RefusedOnly"));
  resize(ToPixels(kWidth), height());
  AddBoxes();
  QPushButton* cancel = AddButton("cmdCancel", tr("Cancel"));
  for (QPushButton* button : findChildren<QPushButton*>()) button->setAutoDefault(true);
  add_->setDefault(true);
  connect(add_, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(replace_, &QCheckBox::toggled, this,
          [this] { RunGuarded(services_.messages, [this] { MakePlan(); }); });
  connect(refused_only_, &QCheckBox::toggled, this, &ImportPreviewForm::ShowPlan);
  MakePlan();
}

// The boxes stand below the table, and the keyboard reaches them in that order.
void ImportPreviewForm::AddBoxes() {
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->insertWidget(0, summary_);
  column->insertWidget(2, refused_only_);
  column->insertWidget(3, replace_);
  setTabOrder(&Table(), refused_only_);
  setTabOrder(refused_only_, replace_);
  setTabOrder(replace_, findChild<QPushButton*>(QStringLiteral("cmdCopy")));
}

void ImportPreviewForm::MakePlan() {
  plan_ =
      list_.PlanImport(bytes_, replace_->isChecked() ? ImportMode::kReplace : ImportMode::kMerge);
  const int refused = plan_.Count(ImportVerdict::kRefused);
  refused_only_->setEnabled(refused > 0);
  if (refused == 0) refused_only_->setChecked(false);
  const int added = plan_.Count(ImportVerdict::kNew) + plan_.Count(ImportVerdict::kChanged);
  const auto deleted = static_cast<int>(plan_.deleted_rows.size());
  add_->setText(deleted == 0 ? tr("Add %1").arg(Number(added))
                             : tr("Add %1, Delete %2").arg(Number(added), Number(deleted)));
  add_->setEnabled(plan_.error.empty() && !plan_.ChangesNothing());
  ShowPlan();
}

void ImportPreviewForm::ShowPlan() {
  summary_->setText(plan_.error.empty() ? Summary() : ToQString(plan_.error));
  const bool all = !refused_only_->isChecked();
  std::vector<QStringList> rows;
  for (const ImportLine& line : plan_.lines) {
    if (all || line.verdict == ImportVerdict::kRefused) rows.push_back(Describe(line));
  }
  for (const int row : plan_.deleted_rows) {
    if (all) rows.push_back(DescribeRow(row, tr("To be deleted"), tr("No line has this row.")));
  }
  for (const int row : plan_.kept_rows) {
    if (all) rows.push_back(DescribeRow(row, tr("Kept"), tr("The system defines this row.")));
  }
  SetRows(rows);
}

QString ImportPreviewForm::Number(int number) const {
  return ToQString(services_.locale.GroupedNumber(number));
}

QString ImportPreviewForm::Summary() const {
  const auto count = [this](ImportVerdict verdict) { return Number(plan_.Count(verdict)); };
  QString text = tr("Lines of %1: %2 new, %3 changed, %4 unchanged, %5 refused.")
                     .arg(source_, count(ImportVerdict::kNew), count(ImportVerdict::kChanged),
                          count(ImportVerdict::kUnchanged), count(ImportVerdict::kRefused));
  if (replace_->isChecked()) {
    text += tr(" Rows that no line has: %1 to be deleted, %2 kept because the system defines them.")
                .arg(Number(static_cast<int>(plan_.deleted_rows.size())),
                     Number(static_cast<int>(plan_.kept_rows.size())));
  }
  return text;
}

QStringList ImportPreviewForm::Describe(const ImportLine& line) const {
  std::string row = line.key;
  if (!line.end.empty()) row += " - " + line.end;
  const bool refused = line.verdict == ImportVerdict::kRefused;
  QStringList reasons;
  if (!line.reason.empty()) reasons += Shown(line.reason);
  if (line.verdict == ImportVerdict::kChanged) reasons += DescribeChange(line);
  return {QString::number(line.line),
          VerdictText(line.verdict),
          Shown(row),
          Shown(line.name),
          refused ? QString() : Word(line.enabled),
          reasons.join(QLatin1Char(' '))};
}

// What the row has been until now.
QString ImportPreviewForm::DescribeChange(const ImportLine& line) const {
  const Grid& grid = list_.Table();
  QStringList changes;
  const CheckState check = grid.Check(line.row, 0);
  if (check == CheckState::kNone) changes += tr("The row was to be deleted.");
  const int column = list_.Description().editable_column;
  if (const auto name = grid.Text(line.row, column); name != line.name) {
    changes += tr("%1 was \"%2\".").arg(Header(list_, column), Shown(name));
  }
  if (check != CheckState::kNone && (check == CheckState::kChecked) != line.enabled) {
    changes += tr("%1 was %2.").arg(Header(list_, 0), Word(!line.enabled));
  }
  return changes.join(QLatin1Char(' '));
}

QStringList ImportPreviewForm::DescribeRow(int row, const QString& verdict,
                                           const QString& reason) const {
  const Grid& grid = list_.Table();
  return {QString(),
          verdict,
          ToQString(list_.RowName(grid, row)),
          ToQString(grid.Text(row, list_.Description().editable_column)),
          ToQString(CheckWord(grid.Check(row, 0))),
          reason};
}

}  // namespace quillan
