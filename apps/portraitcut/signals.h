// Interruption of a batch. SIGINT, SIGTERM and SIGHUP are noticed only while the coordinator waits.
#ifndef APPS_PORTRAITCUT_SIGNALS_H
#define APPS_PORTRAITCUT_SIGNALS_H

#include <poll.h>

#include <vector>

// Holds those three back, but for waitInterruptibly, and lets writing to a closed pipe be an error.
void holdSignals();

// In a worker: the coordinator gets the signals of the terminal as well, and it decides.
void leaveSignalsToCoordinator();

// Like poll, with the signals let in. `milliseconds` below 0 waits without end.
void waitInterruptibly(std::vector<pollfd>& waits, int milliseconds);

// The first of the signals that came, 0 if none did, and how many came.
int caughtSignal();
int caughtCount();

// Whether the program was stopped (by Ctrl-Z, for example) and went on since the last call.
bool wasStopped();

#endif
