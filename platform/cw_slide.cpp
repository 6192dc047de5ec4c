#include "platform/cw_slide.h"

#include <algorithm>

#include "platform/slide_style.h"

namespace platform {

CWSlide::CWSlide(Look look, QWidget* parent)
    : QSlider(look == Look::kFader ? Qt::Vertical : Qt::Horizontal, parent), look_(look) {
  auto* style = new SlideStyle;
  style->setParent(this);
  setStyle(style);
  setSingleStep(1);
  setPageStep(10);
  if (look == Look::kBar) {
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents);
  } else {
    setFocusPolicy(Qt::StrongFocus);
  }
  connect(this, &QAbstractSlider::valueChanged, this, &CWSlide::ValueChanged);
}

void CWSlide::SetScaleMaximum(int maximum) {
  setRange(0, std::max(0, maximum));
}

void CWSlide::SetCaption(const QString& caption) {
  caption_ = caption;
  setAccessibleName(caption);
  update();
}

QSize CWSlide::sizeHint() const {
  return look_ == Look::kFader ? QSize(33, 273) : QSize(305, 25);
}

}  // namespace platform
