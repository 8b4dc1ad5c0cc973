#include "platform/qt/worker_driver.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "lists/port_list.h"
#include "support/program_folder.h"

namespace quillan {
namespace {

TEST(WorkerDriverTest, RunsCallsOnAnotherThreadWhileTheWindowPaintsAndDropsInput) {
  std::promise<void> gate;
  const std::shared_future<void> opened = gate.get_future().share();
  std::thread::id thread;
  test::DriverScript script;
  test::ProgramFolder program(
      [&](ado::DriverFactory drivers) { return OnWorkerThread(script.Wrap(std::move(drivers))); });
  ASSERT_TRUE(program.database.OpenDatabase());
  script.before = [&](const std::string&) {
    thread = std::this_thread::get_id();
    opened.wait();
  };
  QPushButton button;
  button.show();
  int clicks = 0;
  QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
  // Only a call that lets the window work can ever end.
  QTimer::singleShot(0, &button, [&] {
    QTest::mouseClick(&button, Qt::LeftButton);
    gate.set_value();
  });
  program.database.ExecuteChecked("Delete From Nodes");
  EXPECT_EQ(clicks, 0);
  EXPECT_NE(thread, std::this_thread::get_id());
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(program.database.DatabaseEngine(), "SQLite");
  script.before = [](const std::string&) { throw ado::Error(7, "", "failed on purpose"); };
  EXPECT_THROW(program.database.ExecuteChecked("Delete From Nodes"), ado::Error);
}

TEST(WorkerDriverTest, AListIsLoadedAndSavedOnItAndALongQueryCancelled) {
  test::ProgramFolder program(OnWorkerThread);
  program.suite.Run(
      "with recursive n(i) as (values (1) union all select i + 1 from n where i < 500)"
      "insert into ServicePorts select i, 'p', 0, 0 from n");
  ListHost host;
  test::ScriptedMessageBox messages;
  const test::FixedClock clock;
  const text::UserLocale locale("C");
  PortList ports({program.database, host, messages, clock, locale}, [] { return std::nullopt; });
  std::thread elsewhere([&] { program.suite.Run("update ServicePorts set ServiceName = 'q'"); });
  ASSERT_TRUE(ports.Refresh()) << ports.LoadError();
  elsewhere.join();
  for (int row = 1; row <= 500; ++row) ports.OnClick(row, 0);
  EXPECT_EQ(ports.Sync().written, 500);
  EXPECT_EQ(program.suite.Rows("select count(*) from ServicePorts where Enabled = 1")[0], "500");

  QTimer cancel;
  QObject::connect(&cancel, &QTimer::timeout, [&] { program.database.Cancel(); });
  cancel.start(1);
  EXPECT_EQ(
      program.database.OpenRecordset(
          "Select Count(*) From ServicePorts a, ServicePorts b, ServicePorts c, ServicePorts d, "
          "ServicePorts e Where a.Port + b.Port + c.Port + d.Port + e.Port = 0"),
      nullptr);
  EXPECT_EQ(program.database.LastError(), "The statement was cancelled.");
}

}  // namespace
}  // namespace quillan
