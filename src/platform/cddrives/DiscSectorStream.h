#pragma once
// A stretch of a disc's sectors read as one run of bytes, for a player that reads it on a
// thread of its own: it opens the disc with a handle of its own, reads a block of sectors at
// a time, and gives out the part of each sector that carries the sound or the film.

#include <cdio/cdio.h>

#include <QString>
#include <atomic>
#include <vector>

namespace cantovel {

class DiscSectorStream {
  public:
    struct Layout {
        int rawBytes;       // a sector as read
        int payloadOffset;  // where the carried bytes start in it
        int payloadBytes;
        int sectorsARead;
        // Reads `count` sectors from `first` into `buffer`; false on a failed read.
        bool (*read)(CdIo_t* cdio, void* buffer, lsn_t first, unsigned count);
    };
    // CD audio: whole 2352-byte sectors.
    static const Layout kAudio;
    // Video CD film: the 2324 bytes of a Mode 2 Form 2 sector.
    static const Layout kFilm;

    // Opens `device` (a drive or an image); check isOpen().
    DiscSectorStream(const QString& device, const Layout& layout);
    ~DiscSectorStream();
    DiscSectorStream(const DiscSectorStream&) = delete;
    DiscSectorStream& operator=(const DiscSectorStream&) = delete;

    bool isOpen() const { return cdio_ != nullptr; }
    CdIo_t* disc() const { return cdio_; }
    // The stretch read: `count` sectors from `first`.
    void setStretch(lsn_t first, qint64 count);

    qint64 size() const { return count_ * layout_.payloadBytes; }
    // Bytes read into `buffer`, 0 at the end of the stretch, -1 on a failed read or after
    // cancel().
    qint64 read(char* buffer, quint64 bytes);
    // The new offset, or a negative number for one outside the stretch.
    qint64 seek(qint64 offset);
    void cancel() { cancelled_ = true; }

  private:
    bool fill(qint64 sector);

    const Layout& layout_;
    CdIo_t* cdio_ = nullptr;
    lsn_t first_ = 0;
    qint64 count_ = 0;
    qint64 offset_ = 0;  // carried bytes into the stretch
    std::vector<char> block_;
    qint64 blockSector_ = -1;  // first sector held in `block_`, relative to `first_`
    qint64 blockSectors_ = 0;
    std::atomic<bool> cancelled_{false};
};

}  // namespace cantovel
