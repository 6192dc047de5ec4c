// The real window on the off-screen platform, with the simulated board on "Comm1" over a pseudo
// terminal, made anew for each test. Whatever goes otherwise than a test says fails it at once.
#pragma once

#include <gtest/gtest.h>

// What every test of the window needs.
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest/QTest>
#include <algorithm>
#include <functional>

#include "platform/controls/cw_num_edit.h"
#include "platform/controls/cw_slide.h"
#include "rig/program_with_board.h"

namespace pelmora {

using namespace rig;

// A text with decimal points as the operator's locale writes it.
QString Local(QString text);

class WindowTest : public testing::Test, public ProgramWithBoard {
 protected:
  WindowTest();
  ~WindowTest() override;

  // The exact bytes on the line since the last look.
  void ExpectSent(const Bytes& bytes) { EXPECT_EQ(Sent(bytes.size()), bytes); }

  // Keys for the list, which gets the focus.
  void ListKeys(const QString& keys) const {
    List().setFocus();
    hands->Keys(List(), keys);
  }

  // A test that hangs in a wait is ended by failing. Begins anew to count: for tests of many parts.
  void StartWatchdog() { watchdog_.start(kTestLimit); }

  // Steps told apart by channel 0: positions 128, 130, 132, ... read "0 °", "1 °", "2 °", ...
  void AddSteps(int count);
  // The lines as their first angles say.
  QString Order() const;
  // Just these lines, with which their rows agree, and this selection.
  void ExpectSteps(const QString& steps, int selected) const;

 private:
  static constexpr int kTestLimit = 30000;  // ms

  QTimer watchdog_;
};

}  // namespace pelmora
