#include <gtest/gtest.h>

#include <QApplication>

#include "platform/qt/appearance.h"

int main(int argc, char** argv) {
  // The tests need no display, and look the same on every one.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  quillan::InstallAppearance();
  return RUN_ALL_TESTS();
}
