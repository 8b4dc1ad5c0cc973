#include <gtest/gtest.h>

#include <QApplication>

#include "platform/qt/appearance.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  quillan::InstallAppearance();
  return RUN_ALL_TESTS();
}
