// The scheduler in the foreground: what the desktop does in the tray, for a service without a screen.
#pragma once

namespace tandemize {

class ConsoleScreen;

// Starts as the main window does, and then lets the scheduler tick until a stop signal comes. While it waits,
// such a signal ends it at once; during a run it is the user's stop of that run, whose entry still moves on.
//
// Tells on the screen what it waits for, in the language of the settings, whenever that has changed, and how
// each run ended. A settings file that somebody changes meanwhile is read anew between runs, so that it also
// has something to wait for when nothing is scheduled.
void watch(ConsoleScreen& screen);

}  // namespace tandemize
