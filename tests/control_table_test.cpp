// Every control of the window and of the interpolation's dialog, every menu item at start-up, and
// where Tab goes, beside tests/controls.txt. Of an array the first and the last element.
#include <QAccessible>
#include <QMenuBar>

#include "tests/window_fixture.h"
#include "ui/inventory.h"

namespace pelmora {
namespace {

QString TextOf(const QWidget& control) {
  if (auto* slide = qobject_cast<const platform::CWSlide*>(&control)) return slide->Caption();
  return ShownText(control);
}

// A line of the file: name, panel, place and size in pixels; role and text; what else assistive
// technology is told; how it starts; its tip.
QString LineOf(QWidget& control) {
  QAccessibleInterface& spoken = *QAccessible::queryAccessibleInterface(&control);
  const QString name = spoken.text(QAccessible::Name);
  const QString panel = control.parentWidget()->objectName();
  const QString text = TextOf(control);
  const auto* label = qobject_cast<const QLabel*>(&control);
  const auto* field = qobject_cast<const QLineEdit*>(&control);
  QString line = QString("%1 in %2 at %3,%4 %5x%6: %7 \"%8\"")
                     .arg(control.objectName(), panel.isEmpty() ? "Form1" : panel)
                     .arg(control.x())
                     .arg(control.y())
                     .arg(label ? "" : QString::number(control.width()))  // it may take more room
                     .arg(control.height())
                     .arg(QVariant::fromValue(spoken.role()).toString(), text);
  if (name != QString(text).remove('&')) line += " told as \"" + name + '"';
  if (QAccessibleValueInterface* value = spoken.valueInterface()) {
    line += ", " + value->currentValue().toString() + " in " + value->minimumValue().toString() +
            ".." + value->maximumValue().toString();
  }
  if (control.isHidden()) line += ", hidden";
  if (!control.isEnabledTo(control.parentWidget())) line += ", disabled";
  if (spoken.state().checked) line += ", checked";
  if (field && field->isReadOnly()) line += ", read only";
  if (label && label->font().bold())
    line += QString(", bold %1").arg(label->fontInfo().pixelSize());
  const QColor colour = control.palette().color(control.foregroundRole());
  if (label && colour != QApplication::palette().windowText().color()) line += ' ' + colour.name();
  return control.toolTip().isEmpty() ? line : line + "\n    " + control.toolTip();
}

// The names of what Tab goes through from this control on, until it comes back.
QString TabStops(QWidget& first, Qt::Key key = Qt::Key_Tab) {
  QApplication::setActiveWindow(first.window());
  QStringList stops;
  first.setFocus();
  do {
    QWidget* focus = QApplication::focusWidget();
    stops.append(focus->objectName());
    QTest::keyClick(focus, key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
  } while (!stops.contains(QApplication::focusWidget()->objectName()));
  return stops.join(' ');
}

using ControlTable = WindowTest;

TEST_F(ControlTable, IsAsWrittenDown) {
  EXPECT_EQ(form->focusWidget(), &List());
  EXPECT_EQ(form->centralWidget()->size(), QSize(849, 674));
  EXPECT_EQ(form->minimumSize(), form->maximumSize());
  EXPECT_TRUE(
      form->windowFlags().testFlags(Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint));
  EXPECT_FALSE(form->windowFlags() &
               (Qt::WindowMaximizeButtonHint | Qt::WindowContextHelpButtonHint));
  EXPECT_EQ(timer.Interval(), 20);
  QStringList lines = {form->windowTitle()};
  for (const ControlRow& row : Inventory()) {
    lines.append(LineOf(hands->Find<QWidget>(ElementName(row, 0))));
    if (row.count == 1) continue;
    lines.append(LineOf(hands->Find<QWidget>(ElementName(row, row.count - 1))));
  }
  for (const QAction* menu : form->menuBar()->actions()) {
    for (const QAction* item : menu->menu()->actions()) {
      QString line = menu->text() + " / " + item->text() + ' ' + item->shortcut().toString();
      if (item->isCheckable()) line += item->isChecked() ? "[x]" : "[ ]";
      lines.append(line.trimmed() + "\n    " + item->toolTip());
    }
  }
  for (const char* panels : {"FreshProg", "Emu", "Serial"}) Trigger(panels);
  lines.append("Tab: " + TabStops(hands->Find<QWidget>("CommandMoreSeq")));
  lines.append("Shift+Tab: " + TabStops(hands->Find<QWidget>("CommandUp"), Qt::Key_Backtab));
  AddSteps(3);
  Select(1);
  Press("CommandInterpolate");
  const auto& dialog = hands->Find<QDialog>("DialogInterp");
  lines.append(
      QString("%1 %2x%3").arg(dialog.windowTitle()).arg(dialog.width()).arg(dialog.height()));
  for (QWidget* control : dialog.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    lines.append(LineOf(*control));
  }
  for (const char* clicked : {"CWNumEditInterp", "OptionINterp_1"}) {
    hands->Click(clicked);
    lines.append(QString("Tab after %1: ").arg(clicked) +
                 TabStops(hands->Find<QWidget>("CWNumEditInterp")));
  }
  EXPECT_EQ(lines.join('\n').toStdString() + '\n', ReadFile(CONTROLS).toStdString());
}

}  // namespace
}  // namespace pelmora
