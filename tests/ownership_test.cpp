// What belongs to one owner can't be changed from elsewhere: these lines don't compile otherwise.
#include <type_traits>
#include <utility>

#include "edit/edited_sequence.h"
#include "link/board_control.h"
#include "link/board_link.h"
#include "link/debug_panel.h"
#include "link/read_operation.h"
#include "link/serial_port.h"
#include "playback/pc_emulator.h"
#include "ui/form1.h"

namespace pelmora {
namespace {

// Each getter of an owner that may be written gives a value, or something that can only be read.
template <class Result>
concept ReadOnly = !std::is_reference_v<Result> || std::is_const_v<std::remove_reference_t<Result>>;
#define EXPECT_READ_ONLY(Owner, getter) \
  static_assert(ReadOnly<decltype(std::declval<Owner&>().getter())>, #Owner "::" #getter)

EXPECT_READ_ONLY(BoardLink, AckReceived);
EXPECT_READ_ONLY(BoardLink, AbortRequest);
EXPECT_READ_ONLY(BoardLink, Reply);
EXPECT_READ_ONLY(BoardLink, FlashImage);
EXPECT_READ_ONLY(BoardLink, Port);
EXPECT_READ_ONLY(BoardControl, PcControl);
EXPECT_READ_ONLY(DebugPanel, Echo);
EXPECT_READ_ONLY(PcEmulator, Held);
EXPECT_READ_ONLY(EditedSequence, Data);
EXPECT_READ_ONLY(Form1, Edited);
EXPECT_READ_ONLY(Form1, Link);
EXPECT_READ_ONLY(Form1, Playback);

// What writes is out of reach.
#define EXPECT_OUT_OF_REACH(Owner, expression) \
  static_assert(                               \
      ![]<class T>(T*) {                       \
        return requires(T & owner) {           \
          owner.expression;                    \
        };                                     \
      }(static_cast<Owner*>(nullptr)),         \
      #Owner "." #expression)

EXPECT_OUT_OF_REACH(BoardLink, Set(Mode::kRead, true));
EXPECT_OUT_OF_REACH(BoardLink, ack_received_ = true);
EXPECT_OUT_OF_REACH(BoardLink, abort_request_ = true);
EXPECT_OUT_OF_REACH(BoardLink, reply_ = {});
EXPECT_OUT_OF_REACH(BoardLink, flash_image_ = {});
EXPECT_OUT_OF_REACH(SerialPort, SetIdleReceive());
EXPECT_OUT_OF_REACH(SerialPort, SetReplyReceive(1));
EXPECT_OUT_OF_REACH(SerialPort, PollReceive());
EXPECT_OUT_OF_REACH(BoardControl, pc_control_ = true);
EXPECT_OUT_OF_REACH(DebugPanel, echo_.clear());

}  // namespace
}  // namespace pelmora
