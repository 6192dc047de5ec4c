#include "platform/cw_slide.h"

#include <algorithm>

#include "platform/slide_style.h"

namespace platform {

CWSlide::CWSlide(QWidget* parent) : QSlider(Qt::Vertical, parent) {
  auto* style = new SlideStyle;
  style->setParent(this);
  setStyle(style);
  setSingleStep(1);
  setPageStep(10);
  setAttribute(Qt::WA_Hover);
  setFocusPolicy(Qt::StrongFocus);
}

void CWSlide::SetScaleMaximum(int maximum) {
  setRange(0, std::max(0, maximum));
}

void CWSlide::SetCaption(const QString& caption) {
  caption_ = caption;
  setAccessibleName(caption);
  update();
}

void CWSlide::SetAxis(int x) {
  axis_ = x;
  update();
}

}  // namespace platform
