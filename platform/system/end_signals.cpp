#include "platform/system/end_signals.h"

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QSocketNotifier>

namespace platform {

EndSignals::EndSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&set, signal);
  descriptor_ = signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC);
  if (descriptor_ < 0) qFatal("no signals: %s", qPrintable(qt_error_string()));
  sigprocmask(SIG_BLOCK, &set, nullptr);
}

EndSignals::~EndSignals() {
  close(descriptor_);
}

void EndSignals::Watch() {
  auto* notifier = new QSocketNotifier(descriptor_, QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    signalfd_siginfo signal;
    if (read(descriptor_, &signal, sizeof signal) == sizeof signal) emit Requested();
  });
}

}  // namespace platform
