#include "movement/movement_window.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "movement/movement_text.h"

namespace pelmora {
namespace {

constexpr QSize kWanted(1200, 700);
constexpr int kLeastBeside = 520;   // pixels that are worth being narrow for
constexpr int kFrame = 8;           // pixels that a frame takes at a side, about,
constexpr int kTitleBar = 40;       // and at the top at the most
constexpr double kShareOver = 0.9;  // of the screen, where there is no room beside the other
constexpr double kPage = 0.9;       // of what is in view, that a click into the scroll bar turns

}  // namespace

QRect PlaceBeside(const QRect& other, const QRect& screen) {
  const int height = std::min(kWanted.height(), screen.bottom() + 1 - kFrame - other.top());
  const int right = screen.right() - other.right() - 2 * kFrame;
  const int left = other.left() - screen.left() - 2 * kFrame;
  if (height >= other.height() / 2 && std::max(left, right) >= kLeastBeside) {
    const int width = std::min(kWanted.width(), right >= kLeastBeside ? right : left);
    const int x =
        right >= kLeastBeside ? other.right() + 1 + kFrame : other.left() - kFrame - width;
    return {x, other.top(), width, height};
  }
  QRect place(QPoint(), kWanted.boundedTo(screen.size() * kShareOver));
  place.moveBottomRight(screen.bottomRight() - QPoint(kFrame, kFrame));
  place.moveTop(std::max(place.top(), screen.top() + kTitleBar));
  place.setHeight(std::min(place.height(), screen.bottom() - kFrame - place.top()));
  return place;
}

MovementWindow::MovementWindow(const MovementParts& parts, QWidget& main_window)
    : QWidget(&main_window, Qt::Window),
      edited_(parts.edited),
      main_window_(main_window),
      canvas_(new MovementCanvas(parts, this)),
      scroll_bar_(new QScrollBar(Qt::Horizontal, this)),
      total_(new QLabel(this)),
      state_(new QLabel(this)) {
  setObjectName(QStringLiteral("Movement"));
  setAttribute(Qt::WA_QuitOnClose, false);
  scroll_bar_->setObjectName(QStringLiteral("MovementScrollBar"));
  total_->setObjectName(QStringLiteral("MovementTotal"));
  state_->setObjectName(QStringLiteral("MovementState"));
  // A text that comes and goes lays nothing out anew.
  state_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  state_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  QSizePolicy keeps_its_place = scroll_bar_->sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(true);
  scroll_bar_->setSizePolicy(keeps_its_place);

  auto* below = new QHBoxLayout;
  below->setContentsMargins(14, 2, 14, 6);
  below->addWidget(total_);
  below->addWidget(state_, 1);
  auto* bar = new QHBoxLayout;
  bar->setContentsMargins(Places::kLabels, 2, 0, 0);
  bar->addWidget(scroll_bar_);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(0);
  all->addWidget(canvas_, 1);
  all->addLayout(bar);
  all->addLayout(below);
  setFocusProxy(canvas_);

  connect(canvas_, &MovementCanvas::TextsChanged, this, &MovementWindow::ShowTexts);
  connect(canvas_, &MovementCanvas::TimeChanged, this, &MovementWindow::ShowTime);
  connect(scroll_bar_, &QScrollBar::valueChanged, canvas_, &MovementCanvas::ScrollTo);
  ShowTexts();
  ShowTime();
}

// A drag that ends by this is told of while there is somebody to hear it.
MovementWindow::~MovementWindow() {
  hide();
}

void MovementWindow::ShowTexts() {
  setWindowTitle(MovementTitle(edited_.Data().CurSeq));
  total_->setText(canvas_->Total());
  state_->setText(canvas_->State());
}

void MovementWindow::ShowTime() {
  const TimeScale& time = canvas_->Time();
  const int span = static_cast<int>(time.Span());
  const QSignalBlocker blocker(scroll_bar_);
  scroll_bar_->setRange(0, std::max(0, qRound(time.Extent() - time.Span())));
  scroll_bar_->setPageStep(static_cast<int>(span * kPage));
  scroll_bar_->setSingleStep(std::max(1, span / 20));
  scroll_bar_->setValue(qRound(time.Left()));
  scroll_bar_->setVisible(!time.Fits());
}

void MovementWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    hide();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void MovementWindow::Open() {
  if (!placed_) {
    setGeometry(PlaceBeside(main_window_.geometry(), main_window_.screen()->availableGeometry()));
  }
  placed_ = true;
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
  canvas_->setFocus();
}

void MovementWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!event->spontaneous()) emit Shown(true);
}

void MovementWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (!event->spontaneous()) emit Shown(false);
}

void MovementWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) emit Shown(isVisible() && !isMinimized());
}

}  // namespace pelmora
