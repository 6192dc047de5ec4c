// A short operator's tour through the running program, for a machine without a display: it works
// the window, prints what it does and what the board received, and leaves pictures.
#pragma once

#include <QDir>
#include <QString>
#include <QWidget>

#include "rig/program_with_board.h"

namespace demo {

class Tour {
 public:
  // Pictures of the program and of the board's window go into `folder`, numbered in order.
  Tour(rig::ProgramWithBoard& program, QWidget& board_window, const QDir& folder);

  // Goes through all stages. Ends the process when the program does not do what the operator
  // expects.
  void Go();

 private:
  void TryAnEmptyPort();
  void Connect();
  void MoveServos();
  void Compose();
  void ChangeSequence();
  void UndoAndPaste();
  void ShapeTheMovement();
  void Interpolate();
  void Program();
  void ReadBack();
  void PlayFromPc();
  void PlayOnBoard();
  void SaveAndLoad();
  void Erase();
  void PullTheAdapter();
  void Quit();

  void Say(const QString& what);
  void SayReceived();
  // Saves a picture of the program's part of the screen and one of the board's window.
  void Picture(const QString& name);
  // Saves a picture of one window.
  void PictureOf(QWidget& window, const QString& name);
  void Expect(bool holds, const QString& what);
  // Prints the next message, which must be `text` unless that is empty, and presses OK; `picture`,
  // if any, is taken before.
  void AnswerNextMessage(const QString& text, const QString& picture = QString());
  // Works the file dialog that opens next.
  void AnswerFileDialog(const QString& path, const QString& picture);

  rig::ProgramWithBoard& program_;
  QWidget& window_;
  QWidget& board_window_;
  simboard::SimulatedBoard& board_;
  const QDir folder_;
  rig::Operator& operator_;
  int pictures_ = 0;
};

}  // namespace demo
