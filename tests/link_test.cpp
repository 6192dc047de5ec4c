// The board's side of the window: choosing and losing the port, and the bytes of live control, on a
// real pseudo terminal.
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

class Port : public WindowTest {};

TEST_F(Port, OpensWithTheBoardsLineSettingsAndLocksTheList) {
  board.Send({65, 66});  // before the port is open: discarded
  hands->Choose("ComboPort", "Comm1");
  EXPECT_FALSE(Enabled("ComboPort"));
  EXPECT_EQ(hands->Read("ComboPort"), "Comm1");
  const int line = open(board.DevicePath().c_str(), O_RDWR | O_NOCTTY);
  termios settings{};
  ASSERT_EQ(tcgetattr(line, &settings), 0);
  close(line);
  EXPECT_EQ(cfgetospeed(&settings), static_cast<speed_t>(B9600));
  EXPECT_EQ(settings.c_cflag & (CSIZE | CSTOPB | PARENB | CRTSCTS),
            static_cast<tcflag_t>(CS8 | CSTOPB));
  EXPECT_EQ(settings.c_iflag & (IXON | IXOFF | ICRNL | INLCR | ISTRIP), 0U);
  EXPECT_EQ(settings.c_lflag & (ICANON | ECHO | ISIG | IEXTEN), 0U);
  EXPECT_EQ(settings.c_oflag & OPOST, 0U);
  ExpectSent({});
  EXPECT_FALSE(hands->WaitUntil([this] { return hands->Read("Echo") != ""; }, 30));
}

// An entry without a device has nothing to open.
TEST_F(Port, ThatCannotBeOpenedIsNamedAndTheListStaysOpen) {
  auto& combo = hands->Find<QComboBox>("ComboPort");
  board.Unplug();
  for (const int entry : {4, 0}) {
    ExpectMessage(
        QString("Comm%1 can't be opened: there is no serial port for this entry.").arg(entry + 1));
    combo.setCurrentIndex(entry);
    emit combo.activated(entry);
    EXPECT_EQ(combo.currentIndex(), -1);
    EXPECT_TRUE(combo.isEnabled());
  }
  board.Replug();
  Connect();
}

class Live : public WindowTest {};

TEST_F(Live, SliderSendsCodeAndPositionOfItsChannelAndResetCentresAll) {
  Connect();
  constexpr std::uint8_t codes[12] = {8, 9, 10, 11, 12, 13, 14, 15, 40, 41, 42, 43};
  for (int channel = 0; channel < 12; ++channel) {
    const int position = channel == 0 ? 0 : 190 + channel;
    SetSlider(channel, position);
    SetSlider(channel, position);
    ExpectSent({codes[channel], static_cast<std::uint8_t>(position)});
  }
  EXPECT_EQ(hands->Read("Text1_0"), "-128");
  EXPECT_EQ(hands->Read("Text1_12"), "-64 °");
  Bytes centred;
  for (const std::uint8_t code : codes) centred.insert(centred.end(), {code, 128});
  hands->Click("CommandUpdate");
  ExpectSent(centred);
}

TEST_F(Live, WithoutAPortSwitchesSayItOnceAndSlidersStaySilent) {
  hands->ChooseMenu("Emu");
  for (const char* name : {"CWButtonMainOnOff", "CWButtonRealEmu", "CWButtonEmuPC"}) {
    ExpectMessage("No Connection Available!");
    hands->Click(name);
    EXPECT_EQ(hands->Read(name), "Off");
  }
  hands->MoveSlider("CWSlide1_0", 250);
  hands->ChooseMenu("Resetting");
  EXPECT_EQ(hands->Read("Text1_0"), "122");
}

}  // namespace
}  // namespace pelmora
