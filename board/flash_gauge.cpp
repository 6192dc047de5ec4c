#include "board/flash_gauge.h"

#include <QPainter>
#include <QStringList>

#include "board/window_look.h"

namespace simboard {
namespace {

constexpr int kFlashSize = 24064;

}  // namespace

FlashGauge::FlashGauge(QWidget* parent) : QWidget(parent) {
  setAccessibleName(QStringLiteral("Flash"));
  Show(0, {}, -1);
}

void FlashGauge::Show(int bytes, const std::array<int, 16>& sequence_steps, int playing_sequence) {
  if (bytes == bytes_ && sequence_steps == sequence_steps_ &&
      playing_sequence == playing_sequence_) {
    return;
  }
  bytes_ = bytes;
  sequence_steps_ = sequence_steps;
  playing_sequence_ = playing_sequence;
  fill_text_ = QStringLiteral("%1 of %2 bytes, %3 %")
                   .arg(bytes)
                   .arg(kFlashSize)
                   .arg(100.0 * bytes / kFlashSize, 0, 'f', 1);
  QStringList held{fill_text_};
  for (std::size_t i = 0; i < sequence_steps.size(); ++i) {
    if (sequence_steps[i] == 0) continue;
    held << QStringLiteral("sequence %1: %2 steps").arg(i).arg(sequence_steps[i]);
  }
  setAccessibleDescription(held.join(QStringLiteral("; ")));
  update();
}

void FlashGauge::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(look::kCardEdge, 1));
  painter.setBrush(look::kCard);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);

  const QRectF inside = QRectF(rect()).adjusted(14, 9, -14, -10);
  painter.setPen(look::kText);
  painter.setFont(look::Letters(13, QFont::Bold));
  painter.drawText(inside, Qt::AlignLeft | Qt::AlignTop, QStringLiteral("Flash"));
  painter.setPen(look::kQuietText);
  painter.setFont(look::Letters(13));
  painter.drawText(inside, Qt::AlignRight | Qt::AlignTop, fill_text_);

  QRectF bar(inside.left(), inside.top() + 21, inside.width(), 9);
  painter.setPen(Qt::NoPen);
  painter.setBrush(look::kTrack);
  painter.drawRoundedRect(bar, 4.5, 4.5);
  if (bytes_ > 0) {
    painter.setClipRect(QRectF(
        bar.topLeft(), QSizeF(std::max(2.0, bar.width() * bytes_ / kFlashSize), bar.height())));
    painter.setBrush(look::kAccent);
    painter.drawRoundedRect(bar, 4.5, 4.5);
    painter.setClipping(false);
  }

  const qreal gap = 5;
  const qreal width = (inside.width() - 15 * gap) / 16;
  for (std::size_t i = 0; i < sequence_steps_.size(); ++i) {
    PaintSequence(painter, i,
                  QRectF(inside.left() + static_cast<qreal>(i) * (width + gap), bar.bottom() + 10,
                         width, inside.bottom() - bar.bottom() - 10));
  }
}

void FlashGauge::PaintSequence(QPainter& painter, std::size_t sequence, const QRectF& cell) const {
  const int steps = sequence_steps_[sequence];
  const bool playing = static_cast<int>(sequence) == playing_sequence_;
  painter.setPen(playing ? QPen(look::kAccent.darker(120), 1) : QPen(Qt::NoPen));
  painter.setBrush(playing ? look::kAccent : steps > 0 ? look::kAccentPale : look::kBackground);
  painter.drawRoundedRect(cell, 5, 5);

  QRectF number = cell;
  number.setHeight(cell.height() * 0.48);
  QRectF count = cell;
  count.setTop(number.bottom() - 2);
  painter.setPen(playing ? look::kAccentPale : look::kQuietText);
  painter.setFont(look::Letters(11));
  painter.drawText(number, Qt::AlignHCenter | Qt::AlignBottom, QString::number(sequence));
  painter.setPen(playing ? look::kCard : steps > 0 ? look::kText : look::kLampOff);
  painter.setFont(look::Letters(14, QFont::Bold));
  painter.drawText(count, Qt::AlignCenter,
                   steps > 0 ? QString::number(steps) : QStringLiteral("–"));
}

}  // namespace simboard
