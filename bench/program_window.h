// The program's window on the simulated board, worked without an operator: messages are answered at
// once and remembered, the file dialogs give one prepared path.
#pragma once

#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <optional>

#include "board/simulated_board.h"
#include "platform/events.h"
#include "platform/file_dialog.h"
#include "platform/hi_timer.h"
#include "platform/message_box.h"
#include "platform/port_directory.h"
#include "ui/form1.h"

namespace bench {

class ProgramWindow {
 public:
  // Shown, with "Comm1" chosen and open.
  explicit ProgramWindow(simboard::Pace pace);

  template <class T>
  T& Find(const char* name) {
    T* control = form_.findChild<T*>(QLatin1String(name));
    if (!control) qFatal("no such control: %s", name);
    return *control;
  }
  void Click(const char* button) { Find<QPushButton>(button).click(); }

  // Makes `steps` random steps the program's: the sequences are filled one after the other.
  // Each lasts so many ticks of 20 ms.
  void Load(int steps, int ticks = 5);
  void Save();
  void LoadAgain();
  QString File() const { return folder_.filePath(QStringLiteral("sequences.dat")); }

  // Ends the run when the last message was another one: its figure would mean nothing.
  void RequireMessage(const char* text) const;

  simboard::SimulatedBoard& Board() { return board_; }
  platform::SystemHiTimer& Timer() { return timer_; }

 private:
  class Box : public platform::MessageBox {
   public:
    void Show(const QString& text, const QString&) override { last = text; }
    QString last;
  };
  class Dialog : public platform::FileDialog {
   public:
    std::optional<QString> ShowSave(const platform::FileRequest&) override { return path; }
    std::optional<QString> ShowOpen(const platform::FileRequest&) override { return path; }
    QString path;
  };
  class Ports : public platform::PortDirectory {
   public:
    explicit Ports(const simboard::SimulatedBoard& board) : board_(board) {}
    QString DeviceFor(int number) const override {
      return number == 1 ? QString::fromStdString(board_.DevicePath()) : QString();
    }

   private:
    const simboard::SimulatedBoard& board_;
  };

  simboard::SimulatedBoard board_;
  const QTemporaryDir folder_;
  platform::Events events_;
  Box box_;
  Dialog dialog_;
  platform::SystemHiTimer timer_;
  const Ports ports_;
  pelmora::Form1 form_;
};

}  // namespace bench
