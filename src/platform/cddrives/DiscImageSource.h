#pragma once
// libcdio takes a CUE sheet's sectors from the BIN of the CUE's own base name, whatever
// its FILE line names. Every opening of a drive or image goes through openDisc, which
// shows libcdio a CUE whose BIN is named otherwise under a pair of links that do match.

#include <cdio/cdio.h>

#include <QString>

namespace cantovel {

// The folder of the program's run-time files ($XDG_RUNTIME_DIR/cantovel).
QString RuntimeFolder();

// libcdio's handle on the disc in `device`; null when it cannot be opened. Keeps
// libcdio's own warnings off the terminal.
CdIo_t* openDisc(const QString& device);

}  // namespace cantovel
