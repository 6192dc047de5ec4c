#include "tests/window_fixture.h"

#include <QApplication>
#include <QComboBox>
#include <QListWidget>
#include <QLocale>
#include <QRegularExpression>
#include <QtTest/QTest>

#include "platform/cw_slide.h"
#include "platform/list_box.h"
#include "ui/look.h"

namespace pelmora {
namespace {

using std::chrono::milliseconds;

constexpr int kTestLimit = 60000;         // ms, before a test that hangs is ended
constexpr milliseconds kLineLimit{5000};  // until bytes that were sent have arrived
constexpr milliseconds kQuietLine{30};    // after which nothing more is on its way

}  // namespace

QString Local(QString text) {
  static const QRegularExpression point("(?<=\\d)\\.(?=\\d)");
  return text.replace(point, QLocale().decimalPoint());
}

QString Message(const QString& title, const QString& text) {
  return title + ": " + text;
}

void ScriptedMessageBox::Expect(const QString& title, const QString& text,
                                std::function<void()> meanwhile) {
  expected_.push_back({Message(title, text), std::move(meanwhile)});
}

void ScriptedMessageBox::Show(const QString& text, const QString& title) {
  if (events_.Ending()) return;
  if (expected_.empty()) {
    ADD_FAILURE() << "unexpected message: " << Message(title, text).toStdString();
    return;
  }
  const Expected expected = std::move(expected_.front());
  expected_.pop_front();
  EXPECT_EQ(Message(title, text).toStdString(), expected.message.toStdString());
  if (expected.meanwhile) expected.meanwhile();
}

std::optional<QString> ScriptedFileDialog::ShowSave(const platform::FileRequest& request) {
  requests.push_back(request);
  return answer;
}

std::optional<QString> ScriptedFileDialog::ShowOpen(const platform::FileRequest& request) {
  requests.push_back(request);
  return answer;
}

void ManualTimer::SetEnabled(bool enabled) {
  enabled_ = enabled;
  if (enabled) ++starts_;
}

void ManualTimer::Elapse() {
  if (enabled_ && Timer) Timer();
}

QString BoardPorts::DeviceFor(int number) const {
  return number == 1 ? QString::fromStdString(board_.DevicePath()) : QString();
}

WindowTest::WindowTest(simboard::Pace pace) : board(pace), box(events), ports(board) {
  SetUpLook(*qApp);
  form = std::make_unique<Form1>(Surroundings{events, box, files, timer, ports});
  hands = std::make_unique<demo::Operator>(*form);
  form->show();
  form->activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
  watchdog_.setSingleShot(true);
  QObject::connect(&watchdog_, &QTimer::timeout, form.get(), [this] {
    ADD_FAILURE() << "the test hangs in a wait";
    events.End();
  });
  watchdog_.start(kTestLimit);
}

WindowTest::~WindowTest() {
  EXPECT_EQ(box.Outstanding(), 0U) << "messages that were expected did not come";
  hands.reset();
  form.reset();
}

void WindowTest::Connect() {
  auto& combo = hands->Find<QComboBox>("ComboPort");
  combo.setCurrentIndex(0);
  emit combo.activated(0);
  ASSERT_FALSE(combo.isEnabled());
}

Bytes WindowTest::Sent(std::size_t count) {
  EXPECT_TRUE(board.WaitForBytes(count, kLineLimit));
  Bytes bytes = board.Received();
  while (board.WaitForBytes(bytes.size() + 1, kQuietLine)) bytes = board.Received();
  board.ClearLog();
  return bytes;
}

void WindowTest::ExpectSent(const Bytes& bytes) {
  EXPECT_EQ(Sent(bytes.size()), bytes);
}

void WindowTest::ExpectLoss(std::function<void()> meanwhile) {
  ExpectMessage("The connection on Comm1 (" + QString::fromStdString(board.DevicePath()) +
                    ") is lost: the adapter was pulled or the line hung up.\n\nYour sequences are "
                    "untouched. Choose a port to connect again.",
                std::move(meanwhile));
}

void WindowTest::AddStep(int channel, int position, int duration_ms) {
  hands->Find<platform::CWSlide>(QStringLiteral("CWSlide1_%1").arg(channel)).SetValue(position);
  hands->Type("CWNumEditTimeStep", QString::number(duration_ms));
  hands->Click("CommandAdd");
}

QStringList WindowTest::FirstAngles() const {
  QStringList angles;
  for (const QString& line : Lines()) angles.append(line.section('\t', 0, 0));
  return angles;
}

int WindowTest::Selected() const {
  return hands->Find<platform::ListBox>("ListSequence").ListIndex();
}

void WindowTest::Select(int line) {
  hands->Find<platform::ListBox>("ListSequence").SetListIndex(line);
}

bool WindowTest::Enabled(const QString& control) const {
  return hands->Find<QWidget>(control).isEnabled();
}

}  // namespace pelmora
