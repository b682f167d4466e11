#pragma once
#include <QStringList>

namespace cantovel {

class InstanceLink;

// Decides whether this process is the running instance. A second start hands
// "[Restore App]" to the first and returns 0: the process ends. In the hand-off mode
// ("--hand-off" before the path, as the desktop entry of a same-instance association
// starts it) a second start hands its path over instead; with no instance running it
// starts as if the path alone were given. The first instance
// listens for later starts, loads the main window and returns -1: the event loop takes
// over.
int SubMain(const QStringList& arguments);

// The link of the running instance (null before SubMain or in a second start).
InstanceLink* RunningInstanceLink();

// The command that hands a path to the running instance: the one its file type's
// association names, or the path in quotes.
QString HandOffCommand(const QString& path);

// The one path of a command line, as the arguments after the program's name give it.
QString CommandLineOf(const QStringList& arguments);

}  // namespace cantovel
