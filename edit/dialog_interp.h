// The dialog "Interpolation": replaces one step by a run of steps that approach its neighbour.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QRadioButton>
#include <array>
#include <vector>

#include "core/declaration.h"
#include "edit/edited_sequence.h"
#include "platform/controls/cw_num_edit.h"
#include "platform/system/main_loop.h"
#include "platform/system/message_box.h"

namespace pelmora {

// Not modal: it makes the main window unusable itself while it is open. Deletes itself on closing.
class DialogInterp : public QDialog {
  Q_OBJECT
 public:
  // `locked` are disabled while the dialog is open; the first is the main window. All of it
  // outlives the dialog.
  DialogInterp(EditedSequence& edited, platform::MessageBox& message_box,
               platform::MainLoop& main_loop, std::vector<QWidget*> locked);

 private:
  void BuildControls();
  void Form_Load();
  void OKButton_Click();
  void CancelButton_Click() { reject(); }
  void Form_Unload();

  EditedSequence& edited_;
  platform::MessageBox& message_box_;
  const std::vector<QWidget*> locked_;
  std::array<QRadioButton*, 2> OptionINterp{};  // 0: with the previous step, 1: with the next
  platform::CWNumEdit* CWNumEditInterp = nullptr;
  QLabel* missing_choice_ = nullptr;
};

class Interpolation {
 public:
  Interpolation(EditedSequence& edited, platform::MessageBox& message_box,
                platform::MainLoop& main_loop, std::vector<QWidget*> locked);

  // Opens the dialog when the list has at least two lines and one is selected.
  void CommandInterpolate_Click();

 private:
  EditedSequence& edited_;
  platform::MessageBox& message_box_;
  platform::MainLoop& main_loop_;
  const std::vector<QWidget*> locked_;
  QPointer<DialogInterp> dialog_;
};

}  // namespace pelmora
