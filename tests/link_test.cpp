// Choosing the port, on a real pseudo terminal.
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

class Port : public WindowTest {};

TEST_F(Port, OpensWithTheBoardsLineSettingsAndWithoutWhatCameBefore) {
  board.Send({65, 66});
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

TEST_F(Port, OpensNoOtherDeviceThanTheListShowed) {
  const QString shown = QString::fromStdString(board.DevicePath());
  auto& combo = hands->Find<QComboBox>("ComboPort");
  combo.showPopup();
  board.Unplug();
  const simboard::SimulatedBoard other(simboard::Pace::kUnpaced);  // takes the device's name
  board.Replug();
  const QString now = QString::fromStdString(board.DevicePath());
  ASSERT_NE(now, shown);
  ExpectMessage("Comm1 (" + now + ") can't be opened: it stood for " + shown +
                " when you opened the list.");
  combo.view()->setCurrentIndex(combo.model()->index(0, 0));
  QTest::keyClick(combo.view(), Qt::Key_Return);
  EXPECT_TRUE(combo.isEnabled());
  hands->Choose("ComboPort", "Comm1");
  EXPECT_FALSE(combo.isEnabled()) << "chosen from a list that shows what there is now";
}

}  // namespace
}  // namespace pelmora
