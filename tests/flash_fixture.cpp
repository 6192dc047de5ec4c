#include "tests/flash_fixture.h"

#include <QWidget>

namespace pelmora {

FlashTest::FlashTest() {
  Trigger("FreshProg");
  Trigger("Serial");
}

FlashTest::~FlashTest() {
  ExpectAtRest();
}

void FlashTest::ProgramWell() {
  ExpectMessage(kErasedText);
  ExpectMessage(kProgrammedText);
  Program();
}

void FlashTest::ReadWell() {
  ExpectMessage(kReadText);
  Read();
}

Bytes FlashTest::ProgramBytes(const Sequences& sequences) {
  return Bytes{7, 2} + HeaderOf(sequences) + StepDataOf(sequences);
}

void FlashTest::FillFlash(const Sequences& sequences) {
  board.SetFlash(HeaderOf(sequences), StepDataOf(sequences));
}

void FlashTest::Unplug() {
  ExpectLoss();
  board.Unplug();
}

void FlashTest::ConnectAgain() {
  ASSERT_TRUE(hands->WaitUntil([this] { return Enabled("ComboPort"); }));
  board.Replug();
  Connect();
}

void FlashTest::WhenSent(std::size_t count, std::function<void()> action) {
  hands->When([this, count] { return board.WaitForBytes(count, {}); }, std::move(action));
}

QString FlashTest::InBuff() const {
  hands->Click("CommandInBuff");
  return hands->Read("Echo");
}

bool FlashTest::ShowsErasing() const {
  const bool shown = hands->Find<QWidget>("LabelErase").isVisible();
  const bool busy = hands->Find<QWidget>("CommandAdd").cursor().shape() == Qt::BusyCursor;
  EXPECT_EQ(shown, busy);
  return shown;
}

void FlashTest::ExpectAtRest() {
  EXPECT_FALSE(Waiting());
  EXPECT_FALSE(AbortRequested());
  EXPECT_FALSE(Enabled("Command1"));
  EXPECT_FALSE(BarShown());
  EXPECT_FALSE(ShowsErasing());
  EXPECT_LE(std::ranges::max(Data().SeqSteps), kMostSteps);
}

}  // namespace pelmora
