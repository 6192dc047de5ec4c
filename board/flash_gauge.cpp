#include "board/flash_gauge.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QStyle>
#include <QVBoxLayout>

#include "board/window_look.h"

namespace simboard {
namespace {

constexpr int kFlashSize = 24064;

}  // namespace

FlashGauge::FlashGauge(QWidget* parent)
    : QFrame(parent), fill_text_(new QLabel(this)), fill_(new QProgressBar(this)) {
  setObjectName(QStringLiteral("flash"));
  setAccessibleName(QStringLiteral("Flash"));
  auto* title = new QLabel(QStringLiteral("Flash"), this);
  title->setFont(look::Letters(13, QFont::Bold));
  fill_text_->setFont(look::Letters(13));
  fill_text_->setObjectName(QStringLiteral("caption"));
  fill_->setAccessibleName(QStringLiteral("Flash in use"));
  fill_->setRange(0, kFlashSize);
  fill_->setTextVisible(false);
  fill_->setFixedHeight(8);

  auto* captions = new QHBoxLayout;
  captions->addWidget(title);
  captions->addStretch();
  captions->addWidget(fill_text_);
  auto* row = new QHBoxLayout;
  row->setSpacing(5);
  for (QLabel*& sequence : sequences_) {
    sequence = new QLabel(this);
    sequence->setAlignment(Qt::AlignCenter);
    sequence->setFixedHeight(40);
    row->addWidget(sequence, 1);
  }
  auto* whole = new QVBoxLayout(this);
  whole->setContentsMargins(14, 8, 14, 10);
  whole->setSpacing(8);
  whole->addLayout(captions);
  whole->addWidget(fill_);
  whole->addLayout(row);
}

void FlashGauge::Show(int bytes, const std::array<int, 16>& sequence_steps, int playing_sequence) {
  fill_text_->setText(QStringLiteral("%1 of %2 bytes, %3 %")
                          .arg(bytes)
                          .arg(kFlashSize)
                          .arg(100.0 * bytes / kFlashSize, 0, 'f', 1));
  fill_->setValue(bytes);
  for (std::size_t i = 0; i < sequences_.size(); ++i) {
    ShowSequence(i, sequence_steps[i], static_cast<int>(i) == playing_sequence);
  }
}

void FlashGauge::ShowSequence(std::size_t sequence, int steps, bool playing) {
  QLabel& label = *sequences_[sequence];
  const QString text = QStringLiteral(
                           "<span style='font-size:11px'>%1</span><br>"
                           "<b style='font-size:14px'>%2</b>")
                           .arg(sequence)
                           .arg(steps > 0 ? QString::number(steps) : QStringLiteral("–"));
  const char* state = playing ? "playing" : steps > 0 ? "held" : "empty";
  if (label.text() == text && label.property("holds") == QLatin1String(state)) return;
  label.setText(text);
  label.setAccessibleName(QStringLiteral("Sequence %1: %2 steps").arg(sequence).arg(steps));
  label.setProperty("holds", QLatin1String(state));
  // A style sheet looks at properties only when the widget is polished.
  label.style()->unpolish(&label);
  label.style()->polish(&label);
}

}  // namespace simboard
