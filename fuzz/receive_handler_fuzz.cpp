// Input: the mode that the program is in, then what the board sends, over a real pseudo terminal.
// The receive handler must take it all without leaving the shared data in a state that makes no
// sense.
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <QApplication>
#include <QTimer>
#include <algorithm>
#include <memory>

#include "core/flash_image.h"
#include "fuzz/require.h"
#include "link/board_protocol.h"
#include "link/board_wait.h"
#include "platform/events.h"
#include "platform/message_box.h"
#include "platform/ms_comm.h"
#include "platform/port_directory.h"
#include "platform/progress_bar.h"
#include "platform/text_field.h"

using namespace pelmora;

namespace {

constexpr int kPatience = 2;  // ms, after which the operator presses "Abort"

class SilentMessageBox : public platform::MessageBox {
 public:
  void Show(const QString&, const QString&) override {}
};

class OnePort : public platform::PortDirectory {
 public:
  explicit OnePort(QString device) : device_(std::move(device)) {}
  QString DeviceFor(int) const override { return device_; }

 private:
  const QString device_;
};

struct Bench {
  Bench()
      : master(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)),
        ports((grantpt(master), unlockpt(master), QString::fromLocal8Bit(ptsname(master)))),
        comm(ports),
        board(data, comm, events, message_box, echo, bar) {
    comm.SetSettings("9600,N,8,2");
    Require(comm.Open());
    QObject::connect(&comm, &platform::MSComm::OnComm, [this] { board.MSComm1_OnComm(); });
  }

  int master;
  Declaration data;
  platform::Events events;
  SilentMessageBox message_box;
  OnePort ports;
  platform::MSComm comm;
  platform::TextField echo;
  platform::ProgressBar bar;
  BoardProtocol board;
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static QApplication application(*argc, *argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static auto bench = std::make_unique<Bench>();
  Declaration& data = bench->data;
  platform::MSComm& comm = bench->comm;
  if (size == 0) return 0;
  const int mode = bytes[0] % 4;
  data.EraseMode = mode == 1;
  data.ProgramMode = mode == 2;
  data.ReadMode = mode == 3;
  data.AckReceived = data.AbortRequest = false;
  bench->echo.clear();
  comm.ClearInBuffer();
  comm.SetInBufferSize(kHeaderBytes + kFlashCapacity);
  comm.SetInputLen(data.ReadMode ? kHeaderBytes : 1);
  comm.SetRThreshold(data.ReadMode ? kHeaderBytes : 1);

  if (write(bench->master, bytes + 1, size - 1) < 0) return 0;
  QTimer::singleShot(kPatience, &comm, [&data] { data.AbortRequest = true; });
  BoardWait wait(data, comm, bench->events);
  while (wait.Turn()) {
  }

  Require(comm.PortOpen());
  Require(data.RxCount >= 0 && data.RxCount <= kFlashCapacity);
  for (const std::int16_t steps : data.SeqSteps) Require(steps >= 0);
  const auto* end = bytes + size;
  if (data.EraseMode || data.ProgramMode) {
    Require(!data.AckReceived || std::find(bytes + 1, end, kAcknowledgement) != end);
  } else if (data.ReadMode && data.AckReceived) {
    Require(size > kHeaderBytes && comm.RThreshold() == 0);
  }
  return 0;
}
