// What the toolkit tells a screen reader.
#pragma once

#include <QAccessible>
#include <QList>
#include <QStringList>
#include <utility>

// As in the toolkit's private headers. The toolkit announces changes only once a reader has asked
// for them over the session's bus, which a test has not.
class QPlatformAccessibility {
 public:
  void setActive(bool active);
};
class QPlatformIntegration {
 public:
  QPlatformAccessibility* accessibility() const;
};
class QGuiApplicationPrivate {
 public:
  static QPlatformIntegration* platform_integration;
};

namespace pelmora {

// A screen reader that listens as long as it exists; one at a time.
class Listener {
 public:
  Listener() {
    told_.clear();
    QGuiApplicationPrivate::platform_integration->accessibility()->setActive(true);
    former_ = QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
      const QAccessibleInterface* source = event->accessibleInterface();
      if (source && event->type() != QAccessible::ObjectHide) {
        told_.emplaceBack(event->type(), source->text(QAccessible::Name));
      }
    });
  }
  ~Listener() {
    QAccessible::installUpdateHandler(former_);
    QGuiApplicationPrivate::platform_integration->accessibility()->setActive(false);
  }

  // What events of a kind said since the last look: the names of their sources.
  static QStringList Heard(QAccessible::Event kind) {
    QStringList names;
    for (const auto& [type, name] : std::exchange(told_, {})) {
      if (type == kind) names.append(name);
    }
    return names;
  }

 private:
  static inline QList<std::pair<QAccessible::Event, QString>> told_;
  QAccessible::UpdateHandler former_ = nullptr;
};

}  // namespace pelmora
