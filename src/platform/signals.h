// Signals of the terminal and the system, as counters that the run looks at where it may: the
// handlers do nothing else.
#pragma once

namespace vardento {

// Lets SIGINT, SIGTERM, SIGHUP and SIGQUIT be counted (one that the parent process had set to be
// ignored stays so), and a closed pipe or a file size limit end in a write error instead of the
// process. Blocked reads wake up. Call it once, before the first console.
void InstallSignalCounters();

// How often SIGINT came since ClearInterruptSignals.
int InterruptSignals();
void ClearInterruptSignals();
// True once SIGTERM, SIGHUP or SIGQUIT came.
bool TerminationSignalled();
// A descriptor that becomes readable when a signal has come, for a wait on several; -1 when the
// counters are not installed.
int SignalWakeDescriptor();

}  // namespace vardento
