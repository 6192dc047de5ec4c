// A menu whose tool tips stand beside it. The toolkit shows them below the pointer, where they
// cover the next items.
#pragma once

#include <QHelpEvent>
#include <QMenu>
#include <QToolTip>

namespace platform {

class Menu : public QMenu {
 public:
  using QMenu::QMenu;

 protected:
  bool event(QEvent* event) override {
    if (event->type() != QEvent::ToolTip) return QMenu::event(event);
    QAction* item = actionAt(static_cast<QHelpEvent*>(event)->pos());
    const QRect place = actionGeometry(item);
    // The toolkit puts a tip 16 pixels below the place that it is given, to leave the pointer free.
    // An empty one hides the tip.
    QToolTip::showText(mapToGlobal(QPoint(width(), place.top() - 16)),
                       item ? item->toolTip() : QString(), this, place);
    return true;
  }
};

}  // namespace platform
