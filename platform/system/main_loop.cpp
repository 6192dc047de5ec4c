#include "platform/system/main_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

namespace platform {

MainLoop::MainLoop(QObject* parent) : QObject(parent) {}

void MainLoop::DoEvents(Idle idle) {
  if (ending_) return;
  QCoreApplication::processEvents(idle == Idle::kSleep ? QEventLoop::WaitForMoreEvents
                                                       : QEventLoop::AllEvents);
}

void MainLoop::End() {
  if (ending_) return;
  ending_ = true;
  emit Ended();
  if (auto* dispatcher = QAbstractEventDispatcher::instance(thread())) dispatcher->wakeUp();
}

}  // namespace platform
