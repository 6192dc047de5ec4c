#include "edit/dialog_interp.h"

#include <QDialog>
#include <QLabel>
#include <QRadioButton>
#include <algorithm>
#include <array>

#include "core/interpolation.h"
#include "platform/controls/cw_num_edit.h"
#include "platform/controls/option_button.h"
#include "platform/controls/push_button.h"
#include "platform/controls/twips.h"
#include "platform/dialogs/modal.h"
#include "platform/look/colours.h"

namespace pelmora {
namespace {

constexpr char kDialogName[] = "DialogInterp";

constexpr int kLowestCount = 1;
constexpr int kHighestCount = 100;
constexpr int kFastIncrement = 5;

using platform::Pixels;

// Names a control and gives it its place, in twips.
template <class Control>
Control* Placed(const char* name, int left, int top, int width, int height, Control* control) {
  control->setObjectName(QString::fromLatin1(name));
  control->setGeometry(Pixels(left), Pixels(top), Pixels(width), Pixels(height));
  return control;
}

// Deletes itself on closing.
class DialogInterp : public QDialog {
 public:
  DialogInterp(EditedSequence& edited, platform::MessageBox& message_box,
               platform::MainLoop& main_loop, const std::vector<QWidget*>& locked)
      : QDialog(locked.front()), edited_(edited), message_box_(message_box), locked_(locked) {
    setObjectName(QLatin1String(kDialogName));
    setWindowTitle(QStringLiteral("Interpolation"));
    setAttribute(Qt::WA_DeleteOnClose);
    setFixedSize(Pixels(5625), Pixels(2070));
    // A window of its own would not share the size that the main window's captions were fitted to.
    setFont(locked_.back()->font());
    platform::TakeShortcutsOfParents(*this);
    SetUpControls();
    connect(this, &QDialog::finished, this, [this] { Form_Unload(); });
    connect(&main_loop, &platform::MainLoop::Ended, this, &QDialog::reject);
    Form_Load();
  }

 private:
  void SetUpControls() {
    auto* ok = Placed("OKButton", 4080, 120, 1215, 375, new platform::PushButton("&OK", this));
    auto* cancel =
        Placed("CancelButton", 4080, 540, 1215, 375, new platform::PushButton("&Annulla", this));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, [this] { OKButton_Click(); });
    connect(cancel, &QPushButton::clicked, this, [this] { CancelButton_Click(); });
    OptionINterp = {Placed("OptionINterp_0", 360, 120, 3015, 435,
                           new platform::OptionButton("Interpolation With &Previous Step", this)),
                    Placed("OptionINterp_1", 360, 540, 3015, 435,
                           new platform::OptionButton("Interpolation With &Next Step", this))};
    CWNumEditInterp =
        Placed("CWNumEditInterp", 360, 1140, 1095, 315, new platform::CWNumEdit(this));
    CWNumEditInterp->SetScale(kLowestCount, kHighestCount, 1, kFastIncrement);
    CWNumEditInterp->SetOutOfRange(platform::CWNumEdit::OutOfRange::kRefuse);
    CWNumEditInterp->setAccessibleName(QStringLiteral("Number of Interpolation Steps"));
    auto* label =
        Placed("Label1", 1680, 1200, 2295, 315, new QLabel("Number of &Interpolation Steps", this));
    // The caption may be wider than its place; to the right of it is nothing.
    label->resize(std::max(label->width(), label->sizeHint().width()), label->height());
    label->setBuddy(CWNumEditInterp);

    missing_choice_ = Placed("LabelMissingChoice", 360, 1560, 4900, 315,
                             new QLabel("Choose the previous or the next step", this));
    QPalette warning = missing_choice_->palette();
    warning.setColor(QPalette::WindowText, platform::kWarningColour);
    missing_choice_->setPalette(warning);
    missing_choice_->hide();
    for (const QRadioButton* option : OptionINterp) {
      connect(option, &QRadioButton::toggled, missing_choice_, &QLabel::hide);
    }
  }

  void Form_Load() {
    for (QWidget* widget : locked_) widget->setEnabled(false);
    setEnabled(true);
    CWNumEditInterp->setValue(0);
    const int selected = edited_.ListIndex();
    if (selected == edited_.ListCount() - 1) {
      OptionINterp[0]->setChecked(true);
      OptionINterp[1]->setEnabled(false);
    } else if (selected == 0) {
      OptionINterp[1]->setChecked(true);
      OptionINterp[0]->setEnabled(false);
    }
    CWNumEditInterp->setFocus();
    CWNumEditInterp->selectAll();
  }

  void Form_Unload() {
    for (QWidget* widget : locked_) widget->setEnabled(true);
  }

  void OKButton_Click() {
    const int count = CWNumEditInterp->Value();
    if (count <= 1) return accept();
    const bool with_previous = OptionINterp[0]->isChecked();
    if (!with_previous && !OptionINterp[1]->isChecked()) return missing_choice_->show();
    const int source = edited_.ListIndex() - (with_previous ? 1 : 0);
    // Playback or a read that was under way may have changed selection and list since the dialog
    // opened.
    if (source < 0 || source + 1 >= edited_.ListCount()) {
      return Refuse(QStringLiteral("No step is selected that has a step %1 it!")
                        .arg(QLatin1String(with_previous ? "before" : "after")));
    }
    const EditRow& from = edited_.Row(source);
    if (from[kDurationColumn] < kBoardTickMs * count) {
      return Refuse("Number of Steps too high for selected Step Time!");
    }
    if (edited_.ListCount() - 1 + count > kSteps) return Refuse(TooManyLinesText());
    edited_.Replace(source, Interpolate(from, edited_.Row(source + 1), count));
    accept();
  }

  void CancelButton_Click() { reject(); }

  void Refuse(const QString& text) { message_box_.Show(text, "Note", {.parent = this}); }

  EditedSequence& edited_;
  platform::MessageBox& message_box_;
  const std::vector<QWidget*> locked_;
  std::array<QRadioButton*, 2> OptionINterp{};  // 0: with the previous step, 1: with the next
  platform::CWNumEdit* CWNumEditInterp = nullptr;
  QLabel* missing_choice_ = nullptr;
};

}  // namespace

void CommandInterpolate_Click(EditedSequence& edited, platform::MessageBox& message_box,
                              platform::MainLoop& main_loop, const std::vector<QWidget*>& locked) {
  if (edited.ListCount() < 2 || edited.ListIndex() < 0) return;
  // An open dialog keeps the button locked; one that was closed inside an operation's wait has not
  // been deleted yet.
  delete locked.front()->findChild<QDialog*>(kDialogName);
  auto* dialog = new DialogInterp(edited, message_box, main_loop, locked);
  dialog->show();
  dialog->activateWindow();
}

}  // namespace pelmora
