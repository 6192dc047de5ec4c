#include "ui/set_up_controls.h"

#include <QRect>
#include <QStringList>
#include <algorithm>
#include <span>
#include <vector>

#include "core/step_line.h"
#include "link/serial_port.h"
#include "platform/look/colours.h"
#include "ui/look.h"

namespace pelmora {
namespace {

constexpr int kPorts = 8;
constexpr int kStartDuration = 1000;  // ms, of the step being composed
constexpr int kDurationStep = 20;     // one tick of the board
constexpr int kFastDurationStep = 200;

constexpr int kBytesIndent = 6;  // pixels; "OffSet Seq. 15" reaches up to the label beside it

void Colour(QLabel& label, const QColor& colour) {
  QPalette palette = label.palette();
  palette.setColor(QPalette::WindowText, colour);
  label.setPalette(palette);
}

// The top of a text that stands in the middle of the control.
int TextTop(const QWidget& control) {
  return control.y() + (control.height() - control.fontMetrics().height() + 1) / 2;
}

// Draws the label's text at this height of its panel, so that it shares the baseline of the text
// beside it, and `indent` pixels from its left edge.
void PlaceText(QLabel& label, int top, int indent = 0) {
  label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label.setContentsMargins(indent, std::max(0, top - label.y()), 0, 0);
}

// What assistive technology is told of a step in the list: "Step 3: Ch0 10 °, Ch1 0 °, ..., Ch11 0
// °, 1000 ms", and then "breakpoint" if the line has its mark, and "halted" if playback is halted
// there.
QString SpokenStep(int line, const QString& text, bool halted) {
  const std::string written = text.toStdString();
  const QString step = QString::fromStdString(WithoutBreakMarks(written));
  QStringList parts;
  for (const QString& field : step.split('\t', Qt::SkipEmptyParts)) {
    const auto channel = parts.size();
    parts += channel < kChannels ? QStringLiteral("Ch%1 %2").arg(channel).arg(field)
                                 : field.simplified();
  }
  if (HasBreakMark(written)) parts += QStringLiteral("breakpoint");
  if (halted) parts += QStringLiteral("halted");
  return QStringLiteral("Step %1: %2").arg(line).arg(parts.join(", "));
}

}  // namespace

void SetUpControls(const Controls& controls, const platform::PortDirectory& ports) {
  Colour(*controls.LabelSeq, kSequenceColour);
  Colour(*controls.LabelStep, kStepColour);
  Colour(*controls.Label1, kStepColour);
  PlaceText(*controls.Label1, TextTop(*controls.CWNumEditTimeStep));
  PlaceText(*controls.LabelByte, TextTop(*controls.LabelByteCapt), kBytesIndent);
  PlaceText(*controls.LabelOffset, TextTop(*controls.CommandOffset), kBytesIndent);
  PlaceText(*controls.LabelSeqEmu, TextTop(*controls.CWButtonRealEmu));
  controls.LabelErase->setAlignment(Qt::AlignCenter);
  controls.LabelNotStored->setAlignment(Qt::AlignCenter);
  Colour(*controls.LabelNotStored, platform::kWarningColour);
  for (std::size_t i = 0; i < kChannels; ++i) {
    platform::CWSlide& slide = *controls.CWSlide1[i];
    slide.setMaximum(kHighestPosition);
    slide.setValue(kCentre);
    slide.SetToldZero(kCentre);
    // Above the middle of its fields, which are wider.
    slide.SetAxis(controls.Text1[i]->geometry().center().x() - slide.x());
  }
  // Also in the interpolation dialog, in messages and in file dialogs.
  controls.Quit->setShortcutContext(Qt::ApplicationShortcut);
  controls.Echo->setFocusPolicy(Qt::StrongFocus);
  for (platform::PushButton* button :
       {controls.CommandFlash, controls.CommandRead, controls.CommandErase}) {
    button->SetDoubleClickPressesOnce(true);
  }
  platform::CWNumEdit& duration = *controls.CWNumEditTimeStep;
  duration.SetScale(kShortestDuration, kLongestDuration, kDurationStep, kFastDurationStep);
  duration.setSuffix(QStringLiteral(" ms"));
  duration.setValue(kStartDuration);

  platform::DropDownList& combo_port = *controls.ComboPort;
  for (int number = 1; number <= kPorts; ++number) {
    combo_port.addItem(SerialPort::EntryName(number), number);
  }
  combo_port.setCurrentIndex(-1);
  combo_port.StandsFor = [&ports](int number) { return ports.DeviceFor(number); };
  combo_port.NothingTip = QStringLiteral("No serial port for this entry now");

  // Each channel's angles stand under its slider; duration and break mark stand at the right. In
  // lines from the table an empty field comes between those two, so the mark has two columns.
  const QRect list = controls.ListSequence->geometry();
  std::vector<platform::ListColumn> columns;
  for (const platform::TextField* angle : std::span(controls.Text1).last<kChannels>()) {
    columns.push_back(
        {angle->mapTo(controls.ListSequence->parentWidget(), QPoint()).x() - list.left(),
         angle->width() - 1, Qt::AlignHCenter, false, QStringLiteral("-63.5 \u00B0")});
  }
  const int right = columns.back().left + columns.back().width;
  const platform::ListColumn mark = {right + 110, 70, Qt::AlignLeft, true};
  columns.push_back({right + 10, 80, Qt::AlignRight});
  columns.push_back(mark);
  columns.push_back(mark);
  controls.ListSequence->SetColumns(std::move(columns));
  controls.ListSequence->Spoken = SpokenStep;
}

}  // namespace pelmora
