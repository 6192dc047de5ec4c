#include "platform/system/main_loop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

namespace platform {

void MainLoop::DoEvents(Idle idle) {
  if (ending_) return;
  QCoreApplication::processEvents(idle == Idle::kSleep ? QEventLoop::WaitForMoreEvents
                                                       : QEventLoop::AllEvents);
}

void MainLoop::End() {
  if (ending_) return;
  ending_ = true;
  emit Ended();
  QAbstractEventDispatcher::instance()->wakeUp();
}

}  // namespace platform
