// Builds the window's controls from the inventory and finds them by name.
#pragma once

#include <QHash>
#include <QString>
#include <QWidget>

#include "ui/inventory.h"

namespace pelmora {

class Controls {
 public:
  // Makes every control of the inventory as a descendant of `client`, with the control's name as
  // its object name (an array element's is "CWSlide1_3").
  explicit Controls(QWidget& client);

  // The control of that name; it must exist and be of that class.
  template <class T>
  T& Get(const QString& name) const {
    T* control = qobject_cast<T*>(controls_.value(name));
    Q_ASSERT(control);
    return *control;
  }
  template <class T>
  T& Get(const char* array, int index) const {
    return Get<T>(QStringLiteral("%1_%2").arg(QLatin1String(array)).arg(index));
  }

  // Sets the largest font size, from 12 pixels down, at which every caption can be read in full;
  // a caption that misses it by little is narrowed instead.
  void FitFont(QWidget& client) const;

 private:
  QWidget* Make(const ControlRow& row, const QString& caption, QWidget* parent) const;

  QHash<QString, QWidget*> controls_;
};

}  // namespace pelmora
