// The main window: its controls and menus, start-up and shutdown. It wires the controls' events to
// the handlers of the modules below and holds no rule of the program itself.
#pragma once

#include <QMargins>
#include <QRect>
#include <memory>

#include "platform/controls/held_keys.h"
#include "platform/controls/main_window.h"
#include "platform/controls/push_button.h"
#include "platform/controls/scroll_view.h"
#include "platform/dialogs/file_dialog.h"
#include "platform/serial/port_directory.h"
#include "platform/system/hi_timer.h"
#include "platform/system/main_loop.h"
#include "platform/system/message_box.h"

namespace pelmora {

// What surrounds the window, and what tests replace. All of it outlives the window.
struct Surroundings {
  platform::MainLoop& main_loop;
  platform::MessageBox& message_box;
  platform::FileDialog& file_dialog;
  platform::HiTimer& timer;
  const platform::PortDirectory& ports;
};

class BoardLink;
struct Controls;
class EditedSequence;
class ListMenu;
class MovementWindow;
class PcEmulator;

class Form1 : public platform::MainWindow {
  Q_OBJECT
 public:
  explicit Form1(const Surroundings& surroundings);
  ~Form1() override;

  // For tests that look behind the controls.
  const EditedSequence& Edited() const;
  const BoardLink& Link() const;
  const PcEmulator& Playback() const;

  // Centres the window on the usable part of a screen, in pixels. One that is too small for it
  // shows the client area in a view that can be scrolled. To be called once, before the window is
  // shown. How wide a frame the window manager puts around the window is not known before that:
  // once it is, the window finds its place again.
  void PlaceOn(const QRect& screen);

 protected:
  bool event(QEvent* event) override;
  // Closing the window: `Form_Unload`, then `Form_Terminate`, then the end of the program.
  void closeEvent(QCloseEvent* event) override;

 private:
  struct Handlers;

  // Connects a signal to the handlers until they end.
  void On(auto* sender, auto signal, auto handler) {
    connect(sender, signal, wiring_.get(), handler);
  }
  void OnClick(platform::PushButton* button, auto handler) {
    On(button, &platform::PushButton::clicked, handler);
  }
  void PressByKey(const QKeySequence& keys, platform::PushButton& button);
  void ConnectEditing();
  void ConnectLink();
  void ConnectFlash();
  void ConnectPlayback();
  void ConnectMenus();
  void ShowMovement(bool shown);
  void Form_Load();
  void Form_Unload();
  void Form_Terminate();
  void Quit_Click();
  void ShowSwitches();
  void ShowErasing(bool erasing);
  void ShowWhetherStored();
  void MarkSelectedStep();
  void DescribeBreakpoint();
  void ShowHalted();
  void FreshProg_Click(bool checked);
  void Emu_Click(bool checked);
  void Serial_Click(bool checked);
  void PlaceInFrame();
  void EndProgram();

  const Surroundings surroundings_;
  const platform::HeldKeys held_keys_;
  std::unique_ptr<Controls> controls_;
  std::unique_ptr<Handlers> handlers_;
  // Context of all connections to the handlers, so that they end before the handlers do.
  std::unique_ptr<QObject> wiring_;
  QRect screen_;    // where the window has to find its place; without one it stays where it is
  QMargins frame_;  // around the window, as far as it is known
  platform::ScrollView* view_ = nullptr;  // on a screen that is too small
  ListMenu* list_menu_ = nullptr;
  std::unique_ptr<MovementWindow> movement_;  // made when it is wanted first
};

}  // namespace pelmora
