// A view of controls that are together larger than the screen. Unlike the toolkit's it takes no
// focus itself, and it scrolls to the control that gets the focus by any key, not only by Tab. It
// starts at the top left.
#pragma once

#include <QScrollArea>

namespace platform {

class ScrollView : public QScrollArea {
 public:
  // Shows `content` in its own size, in a view of at most `limit` pixels, its scroll bars included.
  ScrollView(QWidget* content, const QSize& limit, QWidget* parent = nullptr);

  // The view may have at most so many pixels from now on.
  void SetLimit(const QSize& limit);

 private:
  // Ends the connection before the view's base, which destroys the controls.
  QObject focus_watch_;
};

}  // namespace platform
