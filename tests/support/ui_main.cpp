#include <gmock/gmock.h>

#include <QApplication>

int main(int argc, char** argv) {
  // The list of tests is asked for at build time, when nobody has chosen a platform.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
