#include "tests/window_fixture.h"

#include <QRegularExpression>

namespace pelmora {
namespace {

void Fail(const QString& problem) {
  ADD_FAILURE() << problem.toStdString();
}

}  // namespace

QString Local(QString text) {
  static const QRegularExpression point("(?<=\\d)\\.(?=\\d)");
  return text.replace(point, QLocale().decimalPoint());
}

WindowTest::WindowTest() : ProgramWithBoard(Fail, simboard::Pace::kUnpaced) {
  EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
  watchdog_.setSingleShot(true);
  watchdog_.callOnTimeout([this] {
    ADD_FAILURE() << "the test hangs in a wait";
    main_loop.End();
  });
  StartWatchdog();
}

WindowTest::~WindowTest() {
  EXPECT_EQ(box.Outstanding(), 0U) << "messages that were expected did not come";
  // An open port waits at its end for all that a true line would still have to carry.
  box.ExpectAnything();
  board.Unplug();
  if (hands) hands->WaitUntil([this] { return !form->Link().Port().Connected(); }, 500);
}

void WindowTest::AddSteps(int count) {
  for (int i = 0; i < count; ++i) AddStep(0, 128 + 2 * i, 100 + 20 * i);
}

QString WindowTest::Order() const {
  QString order;
  for (const QString& line : Lines()) order += line.section(' ', 0, 0);
  return order;
}

void WindowTest::ExpectSteps(const QString& steps, int selected) const {
  EXPECT_EQ(Order(), steps);
  EXPECT_EQ(Selected(), selected);
  for (std::size_t i = 0; const QChar step : steps) {
    EXPECT_EQ(Data().EditBuffer[i++][0], 128 + 2 * step.digitValue());
  }
}

}  // namespace pelmora
