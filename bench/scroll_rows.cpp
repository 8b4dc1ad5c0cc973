#include <QAbstractTableModel>
#include <QCoreApplication>
#include <QHeaderView>
#include <QImage>
#include <QScrollBar>

#include "bench/harness.h"
#include "bench/suite.h"
#include "platform/qt/grid_view.h"
#include "platform/qt/qt_text.h"

namespace quillan::bench {
namespace {

constexpr QSize kViewSize(640, 480);
constexpr int kColumns = 4;

// What a list of interfaces shows, as plainly as Qt can have it: every string a QString already.
class PlainModel final : public QAbstractTableModel {
 public:
  explicit PlainModel(const Grid& grid) {
    for (int row = 0; row < grid.Rows(); ++row) {
      Row& plain = rows_.emplace_back();
      plain.checked = grid.Check(row, 0) == CheckState::kChecked;
      for (int column = 0; column < kColumns; ++column) {
        plain.texts[static_cast<std::size_t>(column)] = ToQString(grid.Text(row, column));
      }
    }
  }

  int rowCount(const QModelIndex& /*parent*/ = {}) const override {
    return static_cast<int>(rows_.size()) - Grid::kFixedRows;
  }
  int columnCount(const QModelIndex& /*parent*/ = {}) const override { return kColumns; }

  QVariant data(const QModelIndex& index, int role) const override {
    const Row& row = rows_[static_cast<std::size_t>(index.row() + Grid::kFixedRows)];
    switch (role) {
      case Qt::DisplayRole:
      case Qt::EditRole:
        return row.texts[static_cast<std::size_t>(index.column())];
      case Qt::CheckStateRole:
        if (index.column() != 0) return {};
        return static_cast<int>(row.checked ? Qt::Checked : Qt::Unchecked);
      case Qt::TextAlignmentRole:
        return Aligned(index.column());
      default:
        return {};
    }
  }

  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::TextAlignmentRole) return Aligned(section);
    if (role == Qt::DisplayRole) return rows_[0].texts[static_cast<std::size_t>(section)];
    return {};
  }

 private:
  static int Aligned(int column) {
    return static_cast<int>((column == 0 ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter);
  }

  struct Row {
    bool checked = false;
    std::array<QString, kColumns> texts;
  };
  std::vector<Row> rows_;  // The header first.
};

// A view and what it shows, which must outlive it.
struct ShownGrid {
  std::shared_ptr<void> grid;
  std::shared_ptr<GridView> view;
};

// Scrolls a view, which shows what `grid` holds, by a page and paints it.
Side Scrolling(const std::shared_ptr<GridView>& shown_by, const std::shared_ptr<void>& grid) {
  const auto shown = std::make_shared<ShownGrid>(ShownGrid{grid, shown_by});
  const std::shared_ptr<GridView> view(shown, shown_by.get());
  view->resize(kViewSize);
  view->show();
  return {[=] {
            // The view lays itself out when it learns of its model.
            QCoreApplication::processEvents();
            QScrollBar& bar = *view->verticalScrollBar();
            if (bar.value() + bar.pageStep() > bar.maximum()) bar.setValue(0);
          },
          [=] {
            QScrollBar& bar = *view->verticalScrollBar();
            bar.setValue(bar.value() + bar.pageStep());
            view->viewport()->repaint();
          },
          [=] {
            const QImage picture =
                view->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
            Checksum sum;
            for (int y = 0; y < picture.height(); ++y) {
              sum.Add(std::string_view(reinterpret_cast<const char*>(picture.constScanLine(y)),
                                       static_cast<std::size_t>(picture.bytesPerLine())));
            }
            return "from row " + std::to_string(view->verticalScrollBar()->value()) + ", sum " +
                   sum.Text();
          }};
}

// A grid of the same columns without rows, for a view that shows another model.
std::unique_ptr<Grid> WithoutRows(const Grid& grid) {
  std::vector<GridColumn> columns;
  for (int column = 0; column < kColumns; ++column) columns.push_back(grid.Column(column));
  auto empty = std::make_unique<Grid>();
  empty->Reset(Grid::kFixedRows, std::move(columns));
  return empty;
}

struct PlainScroll {
  explicit PlainScroll(const Grid& shown) : grid(WithoutRows(shown)), model(shown) {}

  std::unique_ptr<Grid> grid;
  PlainModel model;
};

// Yardstick: the same view over a plain model with the same roles.
Comparison CompareScrolling(std::size_t size) {
  const auto loaded = std::make_shared<LoadedList>(Interfaces(size), &Program::InterfaceList);
  const Grid& grid = loaded->list->Table();
  const auto plain = std::make_shared<PlainScroll>(grid);
  const std::shared_ptr<GridView> plain_view(new GridView(*plain->grid), [](GridView* view) {
    static_cast<QTableView*>(view)->setModel(nullptr);
    delete view;
  });
  QTableView& table = *plain_view;
  std::array<int, kColumns> widths{};
  for (int i = 0; i < kColumns; ++i) widths[static_cast<std::size_t>(i)] = table.columnWidth(i);
  table.setModel(&plain->model);
  for (int i = 0; i < kColumns; ++i) table.setColumnWidth(i, widths[static_cast<std::size_t>(i)]);
  return {Scrolling(std::make_shared<GridView>(loaded->list->Table()), loaded),
          Scrolling(plain_view, plain)};
}

}  // namespace

void AddScrollRows() {
  AddTimedRow(
      {"scroll a page, rows in the list", 1.1, {{1000000, 201}, {100000, 201}, {10000, 201}}, 500},
      &CompareScrolling);
}

}  // namespace quillan::bench
