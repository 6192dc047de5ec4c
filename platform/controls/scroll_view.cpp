#include "platform/controls/scroll_view.h"

#include <QApplication>
#include <QStyle>

namespace platform {

ScrollView::ScrollView(QWidget* content, const QSize& limit, QWidget* parent)
    : QScrollArea(parent) {
  setFrameShape(NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidget(content);
  SetLimit(limit);
  content->show();
  connect(qApp, &QApplication::focusChanged, &focus_watch_,
          [this](QWidget* before, QWidget* focus) {
            // A control that the pointer presses must not move away from under it. Without a
            // control before, the window has become the active one, and shows what it did.
            const bool by_key = before && QApplication::mouseButtons() == Qt::NoButton;
            if (focus && by_key && widget()->isAncestorOf(focus)) ensureWidgetVisible(focus);
          });
}

void ScrollView::SetLimit(const QSize& limit) {
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  QSize size = widget()->size();
  if (size.height() > limit.height()) size.rwidth() += bar;
  if (size.width() > limit.width()) size.rheight() += bar;
  setFixedSize(size.boundedTo(limit));
}

}  // namespace platform
