#include "platform/controls/menu.h"

#include <QHelpEvent>
#include <QToolTip>

namespace platform {
namespace {

// The toolkit puts a tip so far below the place that it is given, in pixels, to leave the pointer
// free.
constexpr int kTipDrop = 16;

}  // namespace

bool Menu::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QMenu::event(event);
  QAction* item = actionAt(static_cast<QHelpEvent*>(event)->pos());
  if (item == nullptr) {
    QToolTip::hideText();
    return true;
  }
  const QRect place = actionGeometry(item);
  QToolTip::showText(mapToGlobal(QPoint(width(), place.top() - kTipDrop)), item->toolTip(), this,
                     place);
  return true;
}

}  // namespace platform
