#include "movement/movement_access.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "movement/movement_canvas.h"

namespace pelmora {
namespace {

class SpokenCanvas : public QAccessibleWidget {
 public:
  explicit SpokenCanvas(MovementCanvas* canvas)
      : QAccessibleWidget(canvas, QAccessible::Chart), canvas_(*canvas) {}

  QString text(QAccessible::Text text) const override {
    if (text == QAccessible::Name) return QStringLiteral("Selected step");
    if (text != QAccessible::Value) return QAccessibleWidget::text(text);
    const QString step = canvas_.SelectedStep();
    return step.isEmpty() ? QStringLiteral("No step is selected") : step;
  }

 private:
  const MovementCanvas& canvas_;
};

QAccessibleInterface* MakeSpoken(const QString&, QObject* object) {
  auto* canvas = qobject_cast<MovementCanvas*>(object);
  return canvas ? new SpokenCanvas(canvas) : nullptr;
}

}  // namespace

void SpeakSelectedStep() {
  // A factory that is installed already is not installed again.
  QAccessible::installFactory(MakeSpoken);
}

void TellSelectedStep(MovementCanvas& canvas, const QString& text) {
  if (!QAccessible::isActive()) return;
  QAccessibleValueChangeEvent event(&canvas, text);
  QAccessible::updateAccessibility(&event);
}

}  // namespace pelmora
