#include "signals.h"

#include <csignal>
#include <ctime>

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile sig_atomic_t firstSignal = 0;
volatile sig_atomic_t signalCount = 0;
volatile sig_atomic_t stopped = 0;

void noteSignal(int signal) {
  if (firstSignal == 0) firstSignal = signal;
  signalCount = signalCount + 1;
}

void noteContinuation(int) { stopped = 1; }

sigset_t heldSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : kSignals) sigaddset(&set, signal);
  return set;
}

// A signal that was ignored when the program started, as under nohup, stays so.
void handle(int signal) {
  struct sigaction old {};
  struct sigaction action {};
  sigaction(signal, nullptr, &old);
  if (old.sa_handler == SIG_IGN) return;
  action.sa_handler = noteSignal;
  sigaction(signal, &action, nullptr);
}

}  // namespace

void holdSignals() {
  const sigset_t held = heldSignals();
  sigprocmask(SIG_BLOCK, &held, nullptr);
  for (const int signal : kSignals) handle(signal);
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGCONT, noteContinuation);
}

void leaveSignalsToCoordinator() {
  for (const int signal : kSignals) std::signal(signal, SIG_IGN);
}

void waitInterruptibly(std::vector<pollfd>& waits, int milliseconds) {
  const timespec limit{milliseconds / 1000, (milliseconds % 1000) * 1000000L};
  sigset_t none;
  sigprocmask(SIG_BLOCK, nullptr, &none);
  for (const int signal : kSignals) sigdelset(&none, signal);
  if (ppoll(waits.data(), waits.size(), milliseconds < 0 ? nullptr : &limit, &none) <= 0) {
    for (pollfd& wait : waits) wait.revents = 0;
  }
}

int caughtSignal() { return firstSignal; }

int caughtCount() { return signalCount; }

bool wasStopped() {
  const bool result = stopped != 0;
  stopped = 0;
  return result;
}
