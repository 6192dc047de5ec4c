#include "edit/dialog_interp.h"

#include <algorithm>
#include <utility>

#include "core/interpolation.h"
#include "platform/controls/option_button.h"
#include "platform/controls/push_button.h"
#include "platform/controls/twips.h"
#include "platform/dialogs/modal.h"

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

DialogInterp::DialogInterp(const InterpolationParts& parts, std::vector<QWidget*> locked)
    : QDialog(locked.front()), parts_(parts), locked_(std::move(locked)) {
  setObjectName(QStringLiteral("DialogInterp"));
  setWindowTitle(QStringLiteral("Interpolation"));
  setAttribute(Qt::WA_DeleteOnClose);
  setFixedSize(Pixels(5625), Pixels(2070));
  // A window of its own would not share the size that the main window's captions were fitted to.
  setFont(locked_.back()->font());
  platform::TakeShortcutsOfParents(*this);
  BuildControls();
  connect(this, &QDialog::finished, this, &DialogInterp::Form_Unload);
  connect(&parts_.events, &platform::Events::Ended, this, &QDialog::reject);
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

  connect(ok, &QPushButton::clicked, this, &DialogInterp::OKButton_Click);
  connect(cancel, &QPushButton::clicked, this, &DialogInterp::CancelButton_Click);
}

void DialogInterp::Form_Load() {
  for (QWidget* widget : locked_) widget->setEnabled(false);
  setEnabled(true);
  CWNumEditInterp->setValue(0);
  const int selected = parts_.edited.ListIndex();
  if (selected == parts_.edited.ListCount() - 1) {
    OptionINterp[0]->setChecked(true);
    OptionINterp[1]->setEnabled(false);
  } else if (selected == 0) {
    OptionINterp[1]->setChecked(true);
    OptionINterp[0]->setEnabled(false);
  }
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
  if (!with_previous && !OptionINterp[1]->isChecked()) return;
  const int selected = parts_.edited.ListIndex();
  const int source = with_previous ? selected - 1 : selected;
  const int lines = parts_.edited.ListCount();
  // Playback or a read that was under way may have changed selection and list since the dialog
  // opened.
  if (source < 0 || source + 1 >= lines) {
    parts_.message_box.Show(QStringLiteral("No step is selected that has a step %1 it!")
                                .arg(QLatin1String(with_previous ? "before" : "after")),
                            kNoteTitle, {.parent = this});
    return;
  }
  const EditRow& from = parts_.edited.Row(source);
  if (StepTimeTooShort(from[kDurationColumn], count)) {
    parts_.message_box.Show(QStringLiteral("Number of Steps too high for selected Step Time!"),
                            kNoteTitle, {.parent = this});
    return;
  }
  if (lines - 1 + count > kSteps) {
    parts_.message_box.Show(TooManyLinesText(), kNoteTitle, {.parent = this});
    return;
  }
  parts_.edited.Replace(source, Interpolate(from, parts_.edited.Row(source + 1), count));
  accept();
}

Interpolation::Interpolation(const InterpolationParts& parts, std::vector<QWidget*> locked)
    : parts_(parts), locked_(std::move(locked)) {}

void Interpolation::CommandInterpolate_Click() {
  if (parts_.edited.ListCount() < 2 || parts_.edited.ListIndex() < 0) return;
  // An open dialog keeps the button locked; one that was closed inside an operation's wait has not
  // been deleted yet.
  delete dialog_.data();
  dialog_ = new DialogInterp(parts_, locked_);
  dialog_->show();
  dialog_->activateWindow();
}

}  // namespace pelmora
