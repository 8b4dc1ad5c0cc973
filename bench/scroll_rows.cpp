#include <QAbstractTableModel>
#include <QCoreApplication>
#include <QHeaderView>
#include <QImage>
#include <QScrollBar>

#include "bench/rows.h"
#include "bench/suite.h"
#include "bench/timing.h"
#include "platform/qt/grid_view.h"
#include "platform/qt/qt_text.h"

namespace quillan::bench {
namespace {

constexpr QSize kViewSize(640, 480);
constexpr std::size_t kColumns = 4;

// What a list of interfaces shows, as plainly as Qt can have it: every text a QString already.
class PlainModel final : public QAbstractTableModel {
 public:
  explicit PlainModel(const Grid& grid) {
    rows_.reserve(static_cast<std::size_t>(grid.Rows()));
    for (int row = Grid::kFixedRows; row < grid.Rows(); ++row) {
      rows_.push_back({grid.Check(row, 0) == CheckState::kChecked,
                       {ToQString(grid.Text(row, 1)), ToQString(grid.Text(row, 2)),
                        ToQString(grid.Text(row, 3))}});
    }
    for (std::size_t column = 0; column < headers_.size(); ++column) {
      headers_[column] = ToQString(grid.Text(0, static_cast<int>(column)));
    }
  }

  int rowCount(const QModelIndex& /*parent*/ = {}) const override {
    return static_cast<int>(rows_.size());
  }
  int columnCount(const QModelIndex& /*parent*/ = {}) const override {
    return static_cast<int>(kColumns);
  }

  QVariant data(const QModelIndex& index, int role) const override {
    const PlainRow& row = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
      case Qt::DisplayRole:
      case Qt::EditRole:
        if (index.column() == 0) return QString();
        return row.texts[static_cast<std::size_t>(index.column() - 1)];
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
    if (role == Qt::DisplayRole) return headers_[static_cast<std::size_t>(section)];
    return {};
  }

 private:
  static int Aligned(int column) {
    return static_cast<int>((column == 0 ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter);
  }

  struct PlainRow {
    bool checked;
    std::array<QString, 3> texts;
  };
  std::vector<PlainRow> rows_;
  std::array<QString, kColumns> headers_;
};

// Shows a view, scrolls it by a page and paints it.
class Scroll : public Side {
 public:
  explicit Scroll(Grid& grid) : view_(grid) {
    view_.resize(kViewSize);
    view_.show();
  }

  void Prepare() override {
    // The view lays itself out when it hears of its model.
    QCoreApplication::processEvents();
    QScrollBar& bar = *view_.verticalScrollBar();
    if (bar.value() + bar.pageStep() > bar.maximum()) bar.setValue(0);
  }
  void Run() override {
    QScrollBar& bar = *view_.verticalScrollBar();
    bar.setValue(bar.value() + bar.pageStep());
    view_.viewport()->repaint();
  }
  std::string Result() override {
    const QImage picture = view_.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    Checksum sum;
    for (int y = 0; y < picture.height(); ++y) {
      sum.Add(std::string_view(reinterpret_cast<const char*>(picture.constScanLine(y)),
                               static_cast<std::size_t>(picture.bytesPerLine())));
    }
    return "from row " + std::to_string(view_.verticalScrollBar()->value()) + ", sum " + sum.Text();
  }

 protected:
  GridView& view() { return view_; }

 private:
  GridView view_;
};

struct InterfaceGrid {
  explicit InterfaceGrid(std::size_t size) : folder(Interfaces(size)), program(folder) {
    list = program.InterfaceList();
    list->Refresh();
  }

  SuiteFolder folder;
  Program program;
  std::unique_ptr<CheckableList> list;
};

class ListScroll final : public Scroll {
 public:
  explicit ListScroll(std::shared_ptr<InterfaceGrid> shown)
      : Scroll(shown->list->Table()), shown_(std::move(shown)) {}

 private:
  std::shared_ptr<InterfaceGrid> shown_;
};

// The same view over the plain model, in the place of a grid without rows.
class PlainScroll final : public Scroll {
 public:
  PlainScroll(std::unique_ptr<Grid> no_rows, const Grid& shown)
      : Scroll(*no_rows), no_rows_(std::move(no_rows)), model_(shown) {
    QTableView& table = view();
    std::array<int, kColumns> widths{};
    for (int column = 0; column < int{kColumns}; ++column) {
      widths[static_cast<std::size_t>(column)] = table.columnWidth(column);
    }
    table.setModel(&model_);
    for (int column = 0; column < int{kColumns}; ++column) {
      table.setColumnWidth(column, widths[static_cast<std::size_t>(column)]);
    }
  }
  ~PlainScroll() override { static_cast<QTableView&>(view()).setModel(nullptr); }

 private:
  std::unique_ptr<Grid> no_rows_;
  PlainModel model_;
};

std::unique_ptr<Grid> WithoutRows(const Grid& grid) {
  std::vector<GridColumn> columns(kColumns);
  for (std::size_t column = 0; column < kColumns; ++column) {
    columns[column] = grid.Column(static_cast<int>(column));
  }
  auto empty = std::make_unique<Grid>();
  empty->Reset(Grid::kFixedRows, std::move(columns));
  return empty;
}

}  // namespace

std::vector<Row> ScrollRows() {
  Row row{.work = "scroll a page, rows in the list",
          .yardstick = "the same view over a plain model with the same roles",
          .goal = 1.3,
          .sizes = {{1000000, 201}, {100000, 201}, {10000, 201}},
          .short_size = 500,
          .growth = Growth::kConstant};
  return {Timed(std::move(row), [](std::size_t size) {
    const auto shown = std::make_shared<InterfaceGrid>(size);
    const Grid& grid = shown->list->Table();
    auto plain = std::make_unique<PlainScroll>(WithoutRows(grid), grid);
    return Comparison{std::make_unique<ListScroll>(shown), std::move(plain)};
  })};
}

}  // namespace quillan::bench
