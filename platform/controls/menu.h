// A menu whose tool tips stand beside it. The toolkit shows them below the pointer, where they
// cover the next items.
#pragma once

#include <QMenu>

namespace platform {

class Menu : public QMenu {
  Q_OBJECT
 public:
  using QMenu::QMenu;

 protected:
  bool event(QEvent* event) override;
};

}  // namespace platform
