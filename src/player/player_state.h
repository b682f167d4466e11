#pragma once
// The main window's public playback state, which other windows read and write.

#include <QString>
#include <QStringList>

#include "app/Runtime.h"

namespace cantovel {

struct PlayerState {
    VBool PlaylistRunning = VFalse;  // queue mode is on
    long PlayIndex = 0;              // index in PlayQueue
    QString CurrentFile;             // full path of the loaded media, or empty
    long CurrentTrack = 0;           // CD track
    quint8 MasterVolume = 0;         // 0..100 (255: no mixer)
    quint8 PlayerVolume = 0;         // 0..100
    qint16 TrackLength = 0;          // seconds, set when a file opens
    VBool StopRequested = VFalse;    // a user stop is under way, so no loop
    VBool PlaylistSaved = VFalse;    // closing or replacing the list needs no question

    // Full paths from index 0, rebuilt from List1 whenever a queue starts.
    QStringList PlayQueue;
};

}  // namespace cantovel
