#include "platform/controls/panel.h"

#include <QPainter>

#include "platform/look/control_look.h"

namespace platform {
namespace {

constexpr double kRadius = 6.5;
constexpr int kCaptionLeft = 12;
constexpr int kCaptionGap = 5;  // between the caption and the frame that it interrupts

}  // namespace

void Panel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QFontMetrics metrics = fontMetrics();
  const int half_caption = metrics.height() / 2;
  const QRect card = rect().adjusted(0, title().isEmpty() ? 0 : half_caption, 0, 0);
  DrawBox(painter, card, palette().color(QPalette::Light), palette().color(QPalette::Midlight),
          false, kRadius);
  if (title().isEmpty()) return;
  const int text_width = metrics.horizontalAdvance(title());
  const QRect text(kCaptionLeft, 0, text_width, metrics.height());
  // The upper half of the caption stands on the window, the lower on the card.
  painter.fillRect(text.adjusted(-kCaptionGap, 0, kCaptionGap, -half_caption),
                   palette().color(QPalette::Window));
  painter.fillRect(text.adjusted(-kCaptionGap, half_caption, kCaptionGap, 0),
                   palette().color(QPalette::Light));
  painter.setPen(
      palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
  painter.drawText(text, Qt::AlignCenter | Qt::TextSingleLine, title());
}

}  // namespace platform
