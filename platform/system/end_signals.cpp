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
  sigprocmask(SIG_BLOCK, &set, nullptr);
  descriptor_ = signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC);
  // Unable to wait for them, the program had better be ended by them.
  if (descriptor_ < 0) sigprocmask(SIG_UNBLOCK, &set, nullptr);
}

EndSignals::~EndSignals() {
  if (descriptor_ >= 0) close(descriptor_);
}

void EndSignals::Watch() {
  if (descriptor_ < 0) return;
  auto* notifier = new QSocketNotifier(descriptor_, QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this] {
    signalfd_siginfo signal;
    if (read(descriptor_, &signal, sizeof signal) == sizeof signal) emit Requested();
  });
}

}  // namespace platform
