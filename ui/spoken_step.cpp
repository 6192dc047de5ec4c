#include "ui/spoken_step.h"

#include <QStringList>

#include "core/declaration.h"
#include "core/step_line.h"

namespace pelmora {

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

}  // namespace pelmora
