// Runs tests inside an application without a display.
#include <gtest/gtest.h>

#include <QApplication>
#include <cstdio>

namespace {

// The off-screen platform says at every window what it can't do, and the test module that a
// disabled control takes no input; everything else is printed.
void Print(QtMsgType, const QMessageLogContext&, const QString& text) {
  if (text.startsWith(QLatin1String("This plugin does not support"))) return;
  if (text.endsWith(QLatin1String("not accepted by receiving widget"))) return;
  std::fprintf(stderr, "%s\n", qPrintable(text));
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler(Print);
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
