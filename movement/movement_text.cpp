#include "movement/movement_text.h"

#include "core/step_line.h"

namespace pelmora {
namespace {

// A number of ms as seconds.
QString Seconds(int ms, int decimals, const std::string& point) {
  return QString::number(ms / 1000.0, 'f', decimals).replace('.', QString::fromStdString(point)) +
         QStringLiteral(" s");
}

constexpr int kDecimals = 2;

}  // namespace

QString MovementTitle(int sequence) {
  return QStringLiteral("Movement - Sequence N\u00B0 %1").arg(sequence);
}

QString NoStepsText() {
  return QStringLiteral(
      "This sequence has no steps yet. Set the faders and press \"Add\" in the main window: each "
      "step that comes into the list appears here, too.");
}

QString TotalText(const ShownSteps& steps, const StepTimes& times, const std::string& point) {
  const QString count =
      steps.Count() == 1 ? QStringLiteral("1 step") : QStringLiteral("%1 steps").arg(steps.Count());
  return count + QStringLiteral(", ") + Seconds(times.Total(), kDecimals, point);
}

QString StepText(const ShownSteps& steps, const StepTimes& times, int step, int channel,
                 const std::string& point) {
  QString text = QStringLiteral("Step %1, %2 to %3, %4 ms")
                     .arg(step)
                     .arg(Seconds(times.Start(step), kDecimals, point),
                          Seconds(times.End(step), kDecimals, point))
                     .arg(steps.Duration(step));
  if (channel < 0) return text;
  return text + QStringLiteral(", Ch%1 ").arg(channel) +
         PositionText(steps.Position(step, channel), point);
}

QString PositionText(int position, const std::string& point) {
  return QString::fromStdString(AngleField(position, point));
}

QString RulerText(int ms, int distance, const std::string& point) {
  return Seconds(ms, distance % 1000 == 0 ? 0 : distance % 100 == 0 ? 1 : 2, point);
}

QString ChangeText(const Preview& preview, int original, const std::string& point) {
  if (preview.column == kDurationColumn) {
    return QStringLiteral("Step %1: %2 ms \u2192 %3 ms")
        .arg(preview.step)
        .arg(original)
        .arg(preview.value);
  }
  return QStringLiteral("Ch%1: %2 \u2192 %3")
      .arg(preview.column)
      .arg(PositionText(original, point), PositionText(preview.value, point));
}

QString OutrunsSerialLineText(const ShownSteps& steps, int step, const std::string& point) {
  const QString line = QString::number(steps.SerialLineTime(step), 'f', 1)
                           .replace('.', QString::fromStdString(point));
  return QStringLiteral(
             "Step %1 lasts %2 ms, but its positions take %3 ms on the line: played from the PC it "
             "comes late. The board plays it in time.")
      .arg(step)
      .arg(steps.Duration(step))
      .arg(line);
}

}  // namespace pelmora
