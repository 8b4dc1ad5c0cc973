#include "platform/qt/worker_driver.h"

#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>

#include "platform/qt/input_blocker.h"

namespace quillan {
namespace {

using WaitClock = std::chrono::steady_clock;

// How long the windows go without a repaint.
constexpr std::chrono::milliseconds kRepaintInterval{50};

// Runs one task at a time on a thread of its own.
class Worker {
 public:
  Worker() : thread_([this] { Loop(); }) {}
  ~Worker() {
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
    }
    changed_.notify_all();
    thread_.join();
  }
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  // Returns what `call` returns and throws what it throws.
  template <typename Call>
  auto Run(Call call) {
    std::packaged_task<decltype(call())()> task(std::move(call));
    auto result = task.get_future();
    Wait([&task] { task(); });
    return result.get();
  }

 private:
  void Loop() {
    std::unique_lock lock(mutex_);
    while (true) {
      changed_.wait(lock, [&] { return ended_ || task_ != nullptr; });
      if (ended_) return;
      lock.unlock();
      (*task_)();
      lock.lock();
      task_ = nullptr;
      changed_.notify_all();
    }
  }

  void Wait(const std::function<void()>& task) {
    std::unique_lock lock(mutex_);
    const auto idle = [&] { return task_ == nullptr; };
    changed_.wait(lock, idle);
    // A call after a pause begins a new series: a short one alone repaints nothing.
    const auto now = WaitClock::now();
    if (now - last_end_ > kRepaintInterval) next_repaint_ = now + kRepaintInterval;
    task_ = &task;
    changed_.notify_all();
    while (!changed_.wait_until(lock, next_repaint_, idle)) Repaint(lock);
    if (WaitClock::now() >= next_repaint_) Repaint(lock);
    last_end_ = WaitClock::now();
  }

  void Repaint(std::unique_lock<std::mutex>& lock) {
    lock.unlock();
    InputBlocker::ProcessEvents();
    lock.lock();
    next_repaint_ = WaitClock::now() + kRepaintInterval;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  const std::function<void()>* task_ = nullptr;
  bool ended_ = false;
  WaitClock::time_point last_end_;
  WaitClock::time_point next_repaint_;
  std::thread thread_;
};

class WorkerDriver final : public ado::Driver {
 public:
  WorkerDriver(std::shared_ptr<Worker> worker, std::unique_ptr<ado::Driver> driver)
      : worker_(std::move(worker)), driver_(std::move(driver)) {}
  ~WorkerDriver() override {
    worker_->Run([this] { driver_.reset(); });
  }
  WorkerDriver(const WorkerDriver&) = delete;
  WorkerDriver& operator=(const WorkerDriver&) = delete;

  void Execute(std::string_view statement) override {
    worker_->Run([&] { driver_->Execute(statement); });
  }
  std::vector<ado::Outcome> ExecuteBatch(std::span<const std::string> statements,
                                         ado::BatchMode mode) override {
    return worker_->Run([&] { return driver_->ExecuteBatch(statements, mode); });
  }
  ado::RowStore Query(std::string_view query) override {
    return worker_->Run([&] { return driver_->Query(query); });
  }
  void ReadUncommitted() override {
    worker_->Run([&] { driver_->ReadUncommitted(); });
  }
  std::vector<std::string> PrimaryKey(std::string_view table) override {
    return worker_->Run([&] { return driver_->PrimaryKey(table); });
  }
  void ChangeOneRow(std::string_view statement, std::span<const ado::Value> values) override {
    worker_->Run([&] { driver_->ChangeOneRow(statement, values); });
  }
  std::string Property(std::string_view name) override {
    return worker_->Run([&] { return driver_->Property(name); });
  }
  void Cancel() override { driver_->Cancel(); }

 private:
  std::shared_ptr<Worker> worker_;
  std::unique_ptr<ado::Driver> driver_;
};

}  // namespace

ado::DriverFactory OnWorkerThread(ado::DriverFactory open_driver) {
  return [worker = std::make_shared<Worker>(),
          open_driver = std::move(open_driver)](const ado::ConnectOptions& options) {
    auto driver = worker->Run([&] { return open_driver(options); });
    return std::make_unique<WorkerDriver>(worker, std::move(driver));
  };
}

}  // namespace quillan
