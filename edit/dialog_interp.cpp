#include "edit/dialog_interp.h"

#include <algorithm>
#include <utility>

#include "core/interpolation.h"
#include "platform/controls/option_button.h"
#include "platform/controls/push_button.h"
#include "platform/controls/twips.h"
#include "platform/dialogs/modal.h"
#include "platform/look/colours.h"

namespace pelmora {
namespace {

constexpr char kNoteTitle[] = "Note";

constexpr int kLowestCount = 1;
constexpr int kHighestCount = 100;
constexpr int kFastIncrement = 5;

using platform::Pixels;

QRect Twips(int left, int top, int width, int height) {
  return {Pixels(left), Pixels(top), Pixels(width), Pixels(height)};
}

}  // namespace

DialogInterp::DialogInterp(EditedSequence& edited, platform::MessageBox& message_box,
                           platform::MainLoop& main_loop, std::vector<QWidget*> locked)
    : QDialog(locked.front()),
      edited_(edited),
      message_box_(message_box),
      locked_(std::move(locked)) {
  setObjectName(QStringLiteral("DialogInterp"));
  setWindowTitle(QStringLiteral("Interpolation"));
  setAttribute(Qt::WA_DeleteOnClose);
  setFixedSize(Pixels(5625), Pixels(2070));
  // A window of its own would not share the size that the main window's captions were fitted to.
  setFont(locked_.back()->font());
  platform::TakeShortcutsOfParents(*this);
  BuildControls();
  connect(this, &QDialog::finished, this, &DialogInterp::Form_Unload);
  connect(&main_loop, &platform::MainLoop::Ended, this, &QDialog::reject);
  Form_Load();
}

void DialogInterp::BuildControls() {
  auto* ok = new platform::PushButton(QStringLiteral("&OK"), this);
  ok->setObjectName(QStringLiteral("OKButton"));
  ok->setGeometry(Twips(4080, 120, 1215, 375));
  ok->setDefault(true);
  auto* cancel = new platform::PushButton(QStringLiteral("&Annulla"), this);
  cancel->setObjectName(QStringLiteral("CancelButton"));
  cancel->setGeometry(Twips(4080, 540, 1215, 375));
  const std::array<QString, 2> captions = {QStringLiteral("Interpolation With &Previous Step"),
                                           QStringLiteral("Interpolation With &Next Step")};
  for (std::size_t i = 0; i < OptionINterp.size(); ++i) {
    const int index = static_cast<int>(i);
    OptionINterp[i] = new platform::OptionButton(captions[i], this);
    OptionINterp[i]->setObjectName(QStringLiteral("OptionINterp_%1").arg(index));
    OptionINterp[i]->setGeometry(Twips(360, 120 + 420 * index, 3015, 435));
  }
  CWNumEditInterp = new platform::CWNumEdit(this);
  CWNumEditInterp->setObjectName(QStringLiteral("CWNumEditInterp"));
  CWNumEditInterp->setGeometry(Twips(360, 1140, 1095, 315));
  CWNumEditInterp->SetScale(kLowestCount, kHighestCount, 1, kFastIncrement);
  CWNumEditInterp->SetOutOfRange(platform::CWNumEdit::OutOfRange::kRefuse);
  auto* label = new QLabel(QStringLiteral("Number of &Interpolation Steps"), this);
  label->setObjectName(QStringLiteral("Label1"));
  label->setGeometry(Twips(1680, 1200, 2295, 315));
  // The caption may be wider than its place; to the right of it is nothing.
  label->resize(std::max(label->width(), label->sizeHint().width()), label->height());
  label->setBuddy(CWNumEditInterp);
  CWNumEditInterp->setAccessibleName(QStringLiteral("Number of Interpolation Steps"));

  missing_choice_ = new QLabel(QStringLiteral("Choose the previous or the next step"), this);
  missing_choice_->setObjectName(QStringLiteral("LabelMissingChoice"));
  missing_choice_->setGeometry(Twips(360, 1560, 4900, 315));
  QPalette warning = missing_choice_->palette();
  warning.setColor(QPalette::WindowText, platform::kWarningColour);
  missing_choice_->setPalette(warning);
  missing_choice_->hide();
  for (const QRadioButton* option : OptionINterp) {
    connect(option, &QRadioButton::toggled, missing_choice_, &QLabel::hide);
  }

  connect(ok, &QPushButton::clicked, this, &DialogInterp::OKButton_Click);
  connect(cancel, &QPushButton::clicked, this, &DialogInterp::CancelButton_Click);
}

void DialogInterp::Form_Load() {
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

void DialogInterp::Form_Unload() {
  for (QWidget* widget : locked_) widget->setEnabled(true);
}

void DialogInterp::OKButton_Click() {
  const int count = CWNumEditInterp->Value();
  if (count <= 1) {
    accept();
    return;
  }
  const bool with_previous = OptionINterp[0]->isChecked();
  if (!with_previous && !OptionINterp[1]->isChecked()) {
    missing_choice_->show();
    return;
  }
  const int selected = edited_.ListIndex();
  const int source = with_previous ? selected - 1 : selected;
  const int lines = edited_.ListCount();
  // Playback or a read that was under way may have changed selection and list since the dialog
  // opened.
  if (source < 0 || source + 1 >= lines) {
    message_box_.Show(QStringLiteral("No step is selected that has a step %1 it!")
                          .arg(QLatin1String(with_previous ? "before" : "after")),
                      kNoteTitle, {.parent = this});
    return;
  }
  const EditRow& from = edited_.Row(source);
  if (StepTimeTooShort(from[kDurationColumn], count)) {
    message_box_.Show(QStringLiteral("Number of Steps too high for selected Step Time!"),
                      kNoteTitle, {.parent = this});
    return;
  }
  if (lines - 1 + count > kSteps) {
    message_box_.Show(TooManyLinesText(), kNoteTitle, {.parent = this});
    return;
  }
  edited_.Replace(source, Interpolate(from, edited_.Row(source + 1), count));
  accept();
}

Interpolation::Interpolation(EditedSequence& edited, platform::MessageBox& message_box,
                             platform::MainLoop& main_loop, std::vector<QWidget*> locked)
    : edited_(edited),
      message_box_(message_box),
      main_loop_(main_loop),
      locked_(std::move(locked)) {}

void Interpolation::CommandInterpolate_Click() {
  if (edited_.ListCount() < 2 || edited_.ListIndex() < 0) return;
  // An open dialog keeps the button locked; one that was closed inside an operation's wait has not
  // been deleted yet.
  delete dialog_.data();
  dialog_ = new DialogInterp(edited_, message_box_, main_loop_, locked_);
  dialog_->show();
  dialog_->activateWindow();
}

}  // namespace pelmora
