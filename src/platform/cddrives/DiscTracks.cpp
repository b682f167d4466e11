#include "platform/cddrives/DiscTracks.h"

#include <algorithm>

#include "platform/cddrives/DiscImageSource.h"

namespace cantovel {

const DiscTrack* DiscToc::track(int number) const {
    for (const DiscTrack& t : tracks)
        if (t.number == number) return &t;
    return nullptr;
}

DiscToc readDiscToc(CdIo_t* cdio) {
    DiscToc toc;
    if (!cdio) return toc;
    const track_t first = cdio_get_first_track_num(cdio);
    const track_t count = cdio_get_num_tracks(cdio);
    if (first == CDIO_INVALID_TRACK || count == CDIO_INVALID_TRACK || count == 0) return toc;
    const lsn_t leadOut = cdio_get_track_lsn(cdio, CDIO_CDROM_LEADOUT_TRACK);
    if (leadOut == CDIO_INVALID_LSN) return toc;
    QList<DiscTrack> tracks;
    for (track_t t = first; t < first + count; ++t) {
        const lsn_t start = cdio_get_track_lsn(cdio, t);
        const lsn_t next =
            t + 1 < first + count ? cdio_get_track_lsn(cdio, track_t(t + 1)) : leadOut;
        if (start == CDIO_INVALID_LSN || next == CDIO_INVALID_LSN) return toc;
        DiscTrack track;
        track.number = t;
        track.first = std::min(start, leadOut);
        track.sectors = std::max<lsn_t>(std::min(next, leadOut) - track.first, 0);
        track.format = cdio_get_track_format(cdio, t);
        tracks.append(track);
    }
    toc.tracks = tracks;
    toc.leadOut = leadOut;
    return toc;
}

DiscToc readDiscToc(const QString& device) {
    if (device.isEmpty()) return {};
    CdIo_t* cdio = openDisc(device);
    const DiscToc toc = readDiscToc(cdio);
    if (cdio) cdio_destroy(cdio);
    return toc;
}

}  // namespace cantovel
