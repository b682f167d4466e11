#pragma once
#include <QStringList>

namespace cantovel {

// Decides whether this process is the running instance. A second start hands
// "[Restore App]" to the first and returns 0 (end the process). The first instance loads
// the main window and returns -1: the event loop takes over.
int SubMain(const QStringList& arguments);

}  // namespace cantovel
