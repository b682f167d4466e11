#pragma once
// The folders of TrackNN.cda files of every drive that holds a disc now, written afresh, so
// the file dialogs can offer CD tracks like any other media files.

#include <QStringList>

namespace cantovel {

QStringList CdTrackFolders();

}  // namespace cantovel
