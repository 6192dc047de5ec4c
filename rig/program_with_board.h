// The program's window with the simulated board on its first port, and everything that surrounds
// the two. Tests, measurements and the demo are built on it.
#pragma once

#include <QAbstractButton>
#include <QRect>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

#include "board/simulated_board.h"
#include "edit/edited_sequence.h"
#include "link/board_link.h"
#include "platform/controls/list_box.h"
#include "platform/dialogs/file_dialog.h"
#include "platform/dialogs/modal_message_box.h"
#include "platform/serial/port_directory.h"
#include "platform/system/hi_timer.h"
#include "platform/system/main_loop.h"
#include "rig/bytes.h"
#include "rig/files.h"
#include "rig/first_port.h"
#include "rig/operator.h"
#include "rig/scripted.h"
#include "rig/sequences.h"
#include "ui/form1.h"

namespace rig {

// Which of the window's surroundings are real ones; the others are scripted.
struct RealParts {
  bool message_boxes = false;
  bool file_dialogs = false;
  bool timer = false;
  QRect screen = {};         // the window is placed on it; without one it has its full size
  bool other_ports = false;  // the entries behind the first one, which are empty otherwise
};

class ProgramWithBoard {
 public:
  // Opens the window in the program's own look, with no port chosen. `complain` is called whenever
  // something happens that the calls below did not announce, or does not happen that they did.
  ProgramWithBoard(Complaint complain, simboard::Pace pace, RealParts real = {});
  ~ProgramWithBoard();
  ProgramWithBoard(const ProgramWithBoard&) = delete;
  ProgramWithBoard& operator=(const ProgramWithBoard&) = delete;

  // Throws the window away and opens another one on the same board.
  void Restart(RealParts real = {});

  // Chooses "Comm1", which must not be open. Nothing is sent by it.
  void Connect();

  // All bytes that the board received since the last call, once `count` have come and the line has
  // been quiet for a moment. Complains when they don't come.
  Bytes Sent(std::size_t count);

  void ExpectMessage(const QString& text, std::function<void()> meanwhile = {}) {
    box.Expect("Program", text, std::move(meanwhile));
  }
  // The message that the board's port, open now, has been lost; it differs while a read is going
  // on.
  void ExpectLoss(std::function<void()> meanwhile = {});

  // Moves a slider to `position` in one go.
  void SetSlider(int channel, int position);
  // Adds a step with channel `channel` at `position`, the others as they stand.
  void AddStep(int channel, int position, int duration_ms);
  // Chooses a menu item without opening the menu.
  void Trigger(const QString& item);
  // Makes the sequences the program's, by a buffer file. The message that this is more than the
  // board holds, if it is, has to be expected by the caller.
  void Load(const Sequences& sequences);

  const pelmora::Declaration& Data() const { return form->Edited().Data(); }
  // The sequences that the program holds; complains of durations that are no whole ticks.
  Sequences Table() const;
  QStringList Lines() const { return hands->ReadLines("ListSequence"); }
  platform::ListBox& List() const;
  int Selected() const { return List().ListIndex(); }
  void Select(int line) { List().SetListIndex(line); }
  // Presses a button by code, which is quicker than by hand. One that is disabled does nothing.
  void Press(const char* button) { hands->Find<QAbstractButton>(button).click(); }
  bool Enabled(const QString& control) const;
  // The bar of the flash operations: the step data that it shows, in bytes.
  int Bar() const;
  int BarMaximum() const;
  bool BarShown() const;
  // Calls `changed` at each move of the bar, until the window ends.
  void WatchBar(std::function<void(int value)> changed);

  // What the program waits for, if anything.
  bool Erasing() const { return form->Link().EraseMode(); }
  bool Programming() const { return form->Link().ProgramMode(); }
  bool Reading() const { return form->Link().ReadMode(); }
  bool Waiting() const { return Erasing() || Programming() || Reading(); }
  bool Acknowledged() const { return form->Link().AckReceived(); }
  bool AbortRequested() const { return form->Link().AbortRequest(); }

  simboard::SimulatedBoard board;
  platform::MainLoop main_loop;
  ScriptedMessageBox box;
  ScriptedFileDialog files;
  ManualTimer timer;
  platform::SystemHiTimer real_timer;
  std::unique_ptr<pelmora::Form1> form;
  std::unique_ptr<Operator> hands;

 private:
  const Complaint complain_;
  platform::ModalMessageBox real_box_;
  platform::ModalFileDialog real_files_;
  const platform::MachinePorts machine_ports_;
  std::unique_ptr<FirstPort> ports_;
};

}  // namespace rig
