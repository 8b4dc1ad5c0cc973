#include <gtest/gtest.h>

#include <memory>

#include <QApplication>
#include <QProcess>

#include "platform/qt/appearance.h"

namespace {

/// A virtual display with a window manager, which decides about focus, activation and frames as on
/// a user's desktop.
class VirtualDesktop final : public testing::Environment {
 public:
  void SetUp() override {
    display_.setProgram(QStringLiteral("Xvfb"));
    display_.setArguments({QStringLiteral("-displayfd"), QStringLiteral("1"),
                           QStringLiteral("-screen"), QStringLiteral("0"),
                           QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"),
                           QStringLiteral("tcp")});
    display_.start();
    if (!display_.waitForReadyRead()) GTEST_SKIP() << "Xvfb is not installed";
    const QByteArray number = display_.readLine().trimmed();
    qputenv("DISPLAY", ":" + number);
    // Says when it manages windows.
    manager_.start(QStringLiteral("openbox"),
                   {QStringLiteral("--sm-disable"), QStringLiteral("--startup"),
                    QStringLiteral("echo ready")});
    if (!manager_.waitForReadyRead()) GTEST_SKIP() << "openbox is not installed";
    qputenv("QT_QPA_PLATFORM", "xcb");
    static int argc = 1;
    static char name[] = "desktop_tests";
    static char* argv[] = {name, nullptr};
    application_ = std::make_unique<QApplication>(argc, argv);
    quillan::InstallAppearance();
  }
  void TearDown() override {
    // The windows go before the display that shows them.
    application_.reset();
    for (QProcess* process : {&manager_, &display_}) {
      process->terminate();
      process->waitForFinished();
    }
  }

 private:
  QProcess display_;
  QProcess manager_;
  std::unique_ptr<QApplication> application_;
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  testing::AddGlobalTestEnvironment(new VirtualDesktop);
  return RUN_ALL_TESTS();
}
