#include "rig/program_state.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QProgressBar>
#include <QScrollBar>
#include <algorithm>

#include "platform/controls/cw_button.h"

namespace rig {
namespace {

using pelmora::EditRow;
using pelmora::kBreakColumn;
using pelmora::kChannels;
using pelmora::kDurationColumn;

constexpr char kHasLine[] = "has a line";

QString Angle(int position) {
  return QLocale().toString((position - pelmora::kCentre) / 2.0, 'g', 6) + " °";
}

QString YesOrNo(bool yes) {
  return yes ? "yes" : "no";
}

// Equal ones in a row are given once: "0*11".
QString InShort(const QStringList& fields, const QString& separator) {
  QStringList runs;
  for (qsizetype i = 0, next; i < fields.size(); i = next) {
    for (next = i + 1; next < fields.size() && fields[next] == fields[i];) ++next;
    runs.append(next - i == 1 ? fields[i] : fields[i] + '*' + QString::number(next - i));
  }
  return runs.join(separator);
}

template <class Positions>
QString InShort(const Positions& positions, int duration) {
  QStringList fields;
  for (std::size_t c = 0; c < kChannels; ++c) fields.append(QString::number(positions[c]));
  return InShort(fields, ",") + ':' + QString::number(duration);
}

// What a control shows; nothing for one that only holds or moves others.
QString Shown(const QWidget& control) {
  if (qobject_cast<const QScrollBar*>(&control)) return {};
  if (auto* bar = qobject_cast<const QProgressBar*>(&control)) {
    return bar->isHidden() ? "" : QString("%1 of %2").arg(bar->value()).arg(bar->maximum());
  }
  const QString text = ShownText(control).remove('&');
  auto* button = qobject_cast<const QAbstractButton*>(&control);
  if (!button || !button->isCheckable()) return text;
  auto* lamp = qobject_cast<const platform::CWButton*>(&control);
  if (!lamp) return text + (button->isChecked() ? ", chosen" : "");
  return button->isChecked() ? lamp->Waiting() ? "On, halted" : "On" : "Off";
}

class Capture {
 public:
  explicit Capture(const ProgramWithBoard& program) : program_(program) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    CaptureWidgets();
    CaptureChannels();
    CaptureList();
    CaptureTable();
    CaptureWarning();
    CaptureTheRest();
  }
  ProgramState State() { return std::move(state_); }

 private:
  void Put(const QString& name, const QString& value) { state_.values[name] = value; }

  void CaptureWidgets() {
    const QWidget& form = *program_.form;
    QStringList windows;
    for (const QWidget* control : form.findChildren<QWidget*>()) {
      QString name = control->objectName();
      if (name.isEmpty() || name.startsWith("qt_")) continue;
      if (control->isWindow() && control->isVisible()) windows.append(control->windowTitle());
      if (control->window() != &form && !control->isWindow()) {
        name = control->window()->objectName() + '.' + name;
      }
      Put(name, Shown(*control));
      const bool enabled = control->isEnabledTo(control->parentWidget());
      Put(name + " enabled?", enabled ? "enabled" : "disabled");
      if (!control->isWindow()) Put(name + " shown?", control->isHidden() ? "hidden" : "shown");
    }
    for (const QAction* item : form.findChildren<QAction*>()) {
      const QString name = item->objectName();
      if (!name.isEmpty()) Put(name + " checked?", item->isChecked() ? "checked" : "unchecked");
    }
    Put("windows", windows.join(", "));
    Put("Form1 enabled?", form.isEnabled() ? "enabled" : "disabled");
    const QWidget* focus = QApplication::focusWidget();
    Put("focus", focus ? focus->objectName() : "none");
    Put("pointer", form.cursor().shape() == Qt::BusyCursor ? "busy" : "arrow");
  }

  // A fader with its two fields is one value as long as they agree.
  void CaptureChannels() {
    for (int i = 0; i < kChannels; ++i) {
      const auto take = [&](const char* array, int index) {
        return state_.values.extract(array + QString::number(index)).mapped();
      };
      const QString position = take("CWSlide1_", i);
      const QString fields = take("Text1_", i) + ", " + take("Text1_", kChannels + i);
      const int offset = position.toInt() - pelmora::kCentre;
      const bool agree = fields == QString("%1, %2").arg(offset).arg(Angle(position.toInt()));
      Put(QString("Ch%1").arg(i), agree ? position : position + ", " + fields);
    }
  }

  // The warning that the list is not stored is told only where it is not as it should be.
  void CaptureWarning() {
    const QString name = "LabelNotStored";
    const QString text = state_.values.extract(name).mapped();
    const QString warned = state_.values.extract(name + " shown?").mapped() == "shown" ? text : "";
    const bool wanted = !program_.form->Edited().Stored() &&
                        state_.values["LabelErase shown?"] == "hidden" && !program_.BarShown();
    const QString sequence = wanted ? QString::number(program_.Data().CurSeq) : "";
    if (warned.section(' ', 2, 2) != sequence) Put(name, warned.isEmpty() ? "missing" : warned);
  }

  void CaptureList() {
    const pelmora::Declaration& data = program_.Data();
    QStringList marks, flags, differing;
    for (const QString& line : program_.Lines()) {
      if (line.endsWith("\tBREAK!")) marks.append(QString::number(state_.lines.size()));
      state_.lines.append(rig::InShort(line));
    }
    for (int i = 0; i < pelmora::kSteps; ++i) {
      const EditRow& row = data.EditBuffer[static_cast<std::size_t>(i)];
      const bool listed = i < state_.lines.size();
      if (row[kBreakColumn] != 0) flags.append(QString::number(i));
      const QString text = InShort(row, row[kDurationColumn]);
      Put(QString("row %1").arg(i), listed ? kHasLine : text);
      if (listed) listed_.append(text);
      if (listed && QString(state_.lines[i]).replace("  ms|", " ms") != LineOf(row)) {
        differing.append(QString::number(i));
      }
    }
    Put("breaks", marks == flags ? marks.join(' ')
                                 : "marks " + marks.join(' ') + " flags " + flags.join(' '));
    Put("rows unlike their lines", differing.join(' '));
    Put("selected", QString::number(program_.Selected()));
    Put("top line", QString::number(program_.List().verticalScrollBar()->value()));
  }

  void CaptureTable() {
    const pelmora::Declaration& data = program_.Data();
    Put("CurSeq", QString::number(data.CurSeq));
    QStringList figures;
    for (std::size_t i = 0; i < pelmora::kSequences; ++i) {
      QStringList steps;
      for (std::size_t step = 0; step < std::size_t(std::min<int>(data.SeqSteps[i], 256)); ++step) {
        const pelmora::SequenceRecord& record = data.SeqTable[i];
        steps.append(InShort(record.Position[step], record.Duration[step]));
      }
      const bool listed = i == data.CurSeq && steps == listed_ && !steps.isEmpty();
      Put(QString("sequence %1").arg(i), listed ? "as listed" : InShort(steps, " "));
      if (data.SeqSteps[i] != 0 || data.SeqOffset[i] != 0) {
        figures.append(QString("%1:%2@%3").arg(i).arg(data.SeqSteps[i]).arg(data.SeqOffset[i]));
      }
    }
    figures.prepend(QString("%1 bytes").arg(data.TotalBytes));
    Put("flash", figures.join(' '));
  }

  void CaptureTheRest() {
    Put("timer", program_.timer.Enabled() ? "on" : "off");
    Put("interval", QString::number(program_.timer.Interval()));
    Put("erasing", YesOrNo(program_.Erasing()));
    Put("programming", YesOrNo(program_.Programming()));
    Put("reading", YesOrNo(program_.Reading()));
    Put("abort", YesOrNo(program_.AbortRequested()));
    Put("port", program_.form->Link().Port().Connected() ? "open" : "closed");
    Put("program", program_.main_loop.Ending() ? "ending" : "running");
    // The menu's items get their names when it opens.
    auto& menu = program_.hands->Find<QMenu>("ListMenu");
    emit menu.aboutToShow();
    for (const QString name : {"Undo", "Redo"}) {
      const auto& item = program_.hands->Find<QAction>("List" + name);
      Put(name.toLower(), item.isEnabled() ? item.text().remove('&').mid(5) : "none");
    }
    emit menu.aboutToHide();
    QStringList copied;
    for (const QString& line : QApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts)) {
      copied.append(rig::InShort(line));
    }
    Put("clipboard", InShort(copied, " / "));
  }

  static QString LineOf(const EditRow& row) {
    QStringList fields;
    for (std::size_t c = 0; c < kChannels; ++c) fields.append(Angle(row[c]));
    return InShort(fields + QStringList(QString::number(row[kDurationColumn]) + " ms"), "|");
  }

  const ProgramWithBoard& program_;
  ProgramState state_;
  QStringList listed_;  // the edit buffer's rows that have a line
};

// "+3 text", "+4-6 text": equal ones that follow each other are one entry. The first is line `at`.
QStringList InShort(const QString& sign, qsizetype at, const QStringList& lines) {
  QStringList entries;
  for (qsizetype i = 0, next; i < lines.size(); i = next) {
    for (next = i + 1; next < lines.size() && lines[next] == lines[i];) ++next;
    const QString last = next - i == 1 ? "" : '-' + QString::number(at + next - 1);
    entries.append(sign + QString::number(at + i) + last + ' ' + lines[i]);
  }
  return entries;
}

// Which lines have gone and come between those that are the same at the beginning and at the end.
QStringList LineDifference(const QStringList& before, const QStringList& after) {
  const auto [gone, come] = std::ranges::mismatch(before, after);
  const auto [kept, kept_too] = std::ranges::mismatch(
      std::make_reverse_iterator(before.end()), std::make_reverse_iterator(gone),
      std::make_reverse_iterator(after.end()), std::make_reverse_iterator(come));
  const qsizetype first = gone - before.begin();
  return InShort("-", first, QStringList(gone, kept.base())) +
         InShort("+", first, QStringList(come, kept_too.base()));
}

QString InWords(const QString& name, const QString& value) {
  if (name.endsWith('?')) return name.section(' ', 0, 0) + ' ' + value;
  return name + ": " + (value.isEmpty() ? "none" : value);
}

}  // namespace

QString InShort(QString line) {
  return InShort(line.remove("\tBREAK!").split('\t'), "|");
}

ProgramState StateOf(const ProgramWithBoard& program) {
  return Capture(program).State();
}

QStringList Difference(const ProgramState& before, const ProgramState& after) {
  static const QStringList usual = {"", "enabled", "shown", "unchecked"};
  QStringList words = LineDifference(before.lines, after.lines);
  for (const auto& [name, value] : after.values) {
    const auto former = before.values.find(name);
    // Of a new window what is not as usual; of a row that has a line, or had one, the line.
    const bool told =
        former == before.values.end()
            ? !usual.contains(value)
            : former->second != value && former->second != kHasLine && value != kHasLine;
    if (told) words.append(InWords(name, value));
  }
  return words;
}

}  // namespace rig
