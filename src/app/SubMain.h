#pragma once
#include <QStringList>

namespace cantovel {

class InstanceLink;

// Decides whether this process is the running instance. A second start hands
// "[Restore App]" to the first and returns 0: the process ends. The first instance
// listens for later starts, loads the main window and returns -1: the event loop takes
// over.
int SubMain(const QStringList& arguments);

// The link of the running instance (null before SubMain or in a second start).
InstanceLink* RunningInstanceLink();

// The one path of a command line, as the arguments after the program's name give it.
QString CommandLineOf(const QStringList& arguments);

}  // namespace cantovel
