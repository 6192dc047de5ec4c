#include "platform/system/events.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

namespace platform {

Events::Events(QObject* parent) : QObject(parent) {}

void Events::DoEvents(Idle idle) {
  if (ending_) return;
  QCoreApplication::processEvents(idle == Idle::kSleep ? QEventLoop::WaitForMoreEvents
                                                       : QEventLoop::AllEvents);
}

void Events::End() {
  if (ending_) return;
  ending_ = true;
  emit Ended();
  if (auto* dispatcher = QAbstractEventDispatcher::instance(thread())) dispatcher->wakeUp();
}

}  // namespace platform
