#include <stdexcept>

#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>

#include "bench/harness.h"
#include "bench/heap_count.h"
#include "bench/plain_database.h"
#include "bench/suite.h"
#include "dialog/list_control.h"
#include "lists/list_filter.h"

namespace quillan::bench {
namespace {

// A part of a window that is painted again and again, and how long it had to wait at most.
class PaintProbe final : public QWidget {
 public:
  explicit PaintProbe(QWidget* parent) : QWidget(parent) {
    resize(1, 1);
    raise();
    show();
    QObject::connect(&timer_, &QTimer::timeout, this, [this] { update(); });
    timer_.start(10);
    since_.start();
  }

  double LongestSeconds() {
    Note();
    return static_cast<double>(longest_) * 1e-9;
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override { Note(); }

 private:
  void Note() {
    longest_ = std::max(longest_, since_.nsecsElapsed());
    since_.start();
  }

  QTimer timer_;
  QElapsedTimer since_;
  qint64 longest_ = 0;
};

// The longest time without a repaint while every row of the sources list is saved and read again.
double LongestPauseOfSave(std::size_t size) {
  Program program(std::make_shared<const SuiteFolder>(Interfaces(size)));
  const auto dialog = program.Dialog();
  dialog->show();
  auto* list = dialog->findChild<ListControl*>(QStringLiteral("InterfacesList"));
  dialog->findChild<QTabWidget*>(QStringLiteral("Tabs"))->setCurrentIndex(5);
  list->findChild<QPushButton*>(QStringLiteral("cmdSelectAll"))->click();
  QCoreApplication::processEvents();
  PaintProbe probe(dialog.get());
  dialog->findChild<QPushButton*>(QStringLiteral("CmdApply"))->click();
  const double longest = probe.LongestSeconds();
  PlainDatabase database(program.folder().database());
  ExpectSame(database.Read<1>("select count(*) from NetFlowSources").front()[0],
             std::to_string(size));
  return longest;
}

using WallClock = std::chrono::steady_clock;

double SecondsOf(const std::function<void()>& work) {
  const auto start = WallClock::now();
  work();
  return std::chrono::duration<double>(WallClock::now() - start).count();
}

// What a step of working with the list of sources takes, the steps before it done.
enum class Step { kOpen, kSort, kFilter, kMemory };

double LargeList(std::size_t size, Step step) {
  Program program(std::make_shared<const SuiteFolder>(Interfaces(size)));
  const auto list = program.InterfaceList();
  const HeapCount heap;
  const double opened = SecondsOf([&] { list->Refresh(); });
  Grid& grid = list->Table();
  ExpectSame(std::to_string(grid.Rows() - Grid::kFixedRows), std::to_string(size));
  switch (step) {
    case Step::kOpen:
      return opened;
    case Step::kMemory:
      return heap.Held() / (1 << 20);
    case Step::kSort:
      return SecondsOf([&] {
        grid.RequestSort(2);
        if (grid.SortColumn() != 2) throw std::runtime_error("the rows are not sorted");
      });
    case Step::kFilter:
      return SecondsOf([&] {
        const ListFilter filter("ethernet0/4", FilterKind::kText);
        grid.SetFilter([&](int row) { return filter.Matches(grid, row); });
        if (grid.ShownRows() == 0) throw std::runtime_error("no row matches");
      });
  }
  return 0;
}

}  // namespace

void AddWindowRows() {
  AddMeasuredRow(
      {"longest time without a repaint, saving interfaces", 0.2, {{1000000, 1}, {100000, 1}}, 1000},
      "seconds", &LongestPauseOfSave);
}

void AddLargeRows() {
  const auto add = [](const std::string& work, std::string_view unit, Step step) {
    AddMeasuredRow({work, 0, {{10000000, 1}, {1000000, 1}}, 1000}, unit,
                   [step](std::size_t size) { return LargeList(size, step); });
  };
  add("open interfaces", "seconds", Step::kOpen);
  add("sort interfaces by text", "seconds", Step::kSort);
  add("filter interfaces", "seconds", Step::kFilter);
  add("memory of interfaces", "MiB", Step::kMemory);
}

}  // namespace quillan::bench
