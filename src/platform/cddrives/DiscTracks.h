#pragma once
// The tracks of a disc as its data holds them, the one reading of a table of contents that
// every CD backend shares (reader, extractor, CD audio device, Video CD).
//
// An image's sectors end where its BIN does, whatever its CUE says: the disc ends there. A
// track holds the sectors of it that exist, and one that would start past the end starts
// at the end with none, so every length and the disc's time stop where its data stops.

#include <cdio/cdio.h>

#include <QList>
#include <QString>

namespace cantovel {

struct DiscTrack {
    int number = 0;     // as on the disc
    lsn_t first = 0;    // libcdio's sector number of its first sector
    lsn_t sectors = 0;  // sectors of it on the disc
    track_format_t format = TRACK_FORMAT_AUDIO;

    bool isAudio() const { return format == TRACK_FORMAT_AUDIO; }
    lsn_t end() const { return first + sectors; }  // first sector past it
};

struct DiscToc {
    QList<DiscTrack> tracks;
    lsn_t leadOut = 0;  // first sector past the disc's data

    // The track of that number, or null.
    const DiscTrack* track(int number) const;
};

// The table of contents of the disc `cdio` holds; no tracks when it cannot be read.
DiscToc readDiscToc(CdIo_t* cdio);
// The same of the disc in `device` (a drive or an image), opened for the reading.
DiscToc readDiscToc(const QString& device);

}  // namespace cantovel
