// The road of typical use on the real window, by mouse and keys: connect, move the servos, compose
// two sequences, write them into the board, and let it play. The bytes on the line and the texts on
// the screen at each stage.
#include <QtTest/QTest>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

class Road : public WindowTest {
 protected:
  void ExpectTexts(const std::vector<std::pair<QString, QString>>& texts) const {
    for (const auto& [control, text] : texts) {
      EXPECT_EQ(hands->Read(control).toStdString(), Local(text).toStdString())
          << control.toStdString();
    }
  }
};

TEST_F(Road, FromTheFirstSliderToTheBoardsOwnPlayback) {
  for (const char* item : {"FreshProg", "Emu", "Serial"}) hands->ChooseMenu(item);
  hands->Choose("ComboPort", "Comm1");
  EXPECT_FALSE(Enabled("ComboPort"));
  hands->Click("CWButtonMainOnOff");
  ExpectSent({1});

  // The first pose: one channel by the keyboard, one typed, then the duration, then "Add".
  auto& slider = hands->Find<QWidget>("CWSlide1_0");
  slider.setFocus();
  QTest::keyClick(&slider, Qt::Key_PageUp);
  QTest::keyClick(&slider, Qt::Key_Down);
  hands->Type("Text1_9", "72", false);
  hands->Type("CWNumEditTimeStep", "100");
  ExpectSent({8, 138, 8, 137, 41, 200});
  ExpectTexts({{"Text1_0", "9"}, {"Text1_12", "4.5 °"}, {"Text1_9", "72"}, {"Text1_21", "36 °"}});
  hands->Click("CommandAdd");
  ExpectTexts({{"LabelStep", "Step N° 0"}, {"LabelByte", "14 bytes"}});
  EXPECT_EQ(Lines(),
            QStringList(Local("4.5 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t0 °\t36 °\t0 °\t0 °"
                              "\t100 ms")));

  // The second pose, at 5120 ms; a double click shows the first one again.
  hands->Click("CommandUpdate");
  hands->Type("CWNumEditTimeStep", "5120");
  hands->Click("CommandAdd");
  ExpectSent({8, 128, 41, 128});
  hands->DoubleClickLine("ListSequence", 0);
  ExpectSent({8, 137, 41, 200});
  ExpectTexts({{"LabelStep", "Step N° 0"}, {"CWNumEditTimeStep", "100 ms"}});

  // Sequence 1 holds the first pose alone.
  hands->Click("CommandMoreSeq");
  hands->Click("CommandAdd");
  ExpectTexts({{"LabelSeq", "Sequence N° 1"},
               {"LabelSeqEmu", "Sequence N° 1"},
               {"CommandOffset", "OffSet Seq. 1"},
               {"LabelOffset", "28 bytes"},
               {"LabelByte", "42 bytes"}});
  ExpectSent({});

  ExpectMessage("Data Flash Erased");
  ExpectMessage("Data Flash Programmed!");
  hands->Click("CommandFlash");
  Bytes expected = {7, 2, 0, 42, 0, 2, 0, 0, 0, 1, 0, 28};
  expected.resize(expected.size() + 14 * 4);  // sequences 2 to 15 are empty
  const Bytes first_pose = {137, 128, 128, 128, 128, 128, 128, 128, 128, 200, 128, 128, 0, 5};
  const Bytes second_pose = {128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 128, 1, 0};
  for (const Bytes& step : {first_pose, second_pose, first_pose}) {
    expected.insert(expected.end(), step.begin(), step.end());
  }
  ExpectSent(expected);

  hands->Click("CWButtonRealEmu");
  ExpectSent({3, 1});
  EXPECT_FALSE(Enabled("CWButtonEmuPC"));
  EXPECT_TRUE(hands->WaitUntil([this] { return board.Snapshot().playing_sequence == 1; }));
  hands->Click("CWButtonRealEmu");
  ExpectSent({4});

  ExpectMessage("Data Flash Read!");
  hands->Click("CommandRead");
  ExpectSent({6});
  ExpectTexts({{"LabelSeq", "Sequence N° 0"}, {"LabelStep", "Step N° ..."}});
  ASSERT_EQ(Lines().size(), 2);
  EXPECT_TRUE(Lines()[1].endsWith("\t5120  ms\t"));
  hands->ChooseMenu("Quit");
  ExpectSent({0});
  EXPECT_TRUE(events.Ending());
}

}  // namespace
}  // namespace pelmora
