#include "platform/cddrives/DiscSectorStream.h"

#include <cdio/read.h>
#include <cdio/sector.h>

#include <algorithm>
#include <cstring>

#include "platform/cddrives/DiscImageSource.h"

namespace cantovel {

const DiscSectorStream::Layout DiscSectorStream::kAudio{
    CDIO_CD_FRAMESIZE_RAW, 0, CDIO_CD_FRAMESIZE_RAW,
    // About a third of a second, and what one ATAPI transfer holds.
    26, [](CdIo_t* cdio, void* buffer, lsn_t first, unsigned count) {
        return cdio_read_audio_sectors(cdio, buffer, first, count) == DRIVER_OP_SUCCESS;
    }};

// libcdio reads a Form 2 sector as its 8-byte subheader, the 2324 bytes of the film and the
// 4-byte check.
const DiscSectorStream::Layout DiscSectorStream::kFilm{
    M2RAW_SECTOR_SIZE, CDIO_CD_SUBHEADER_SIZE, M2F2_SECTOR_SIZE, 32,
    [](CdIo_t* cdio, void* buffer, lsn_t first, unsigned count) {
        return cdio_read_mode2_sectors(cdio, buffer, first, true, count) == DRIVER_OP_SUCCESS;
    }};

DiscSectorStream::DiscSectorStream(const QString& device, const Layout& layout)
    : layout_(layout), cdio_(openDisc(device)) {}

DiscSectorStream::~DiscSectorStream() {
    if (cdio_) cdio_destroy(cdio_);
}

void DiscSectorStream::setStretch(lsn_t first, qint64 count) {
    first_ = first;
    count_ = std::max<qint64>(count, 0);
    offset_ = 0;
    blockSector_ = -1;
    blockSectors_ = 0;
}

bool DiscSectorStream::fill(qint64 sector) {
    const qint64 n = std::min<qint64>(layout_.sectorsARead, count_ - sector);
    block_.resize(size_t(n * layout_.rawBytes));
    if (!layout_.read(cdio_, block_.data(), lsn_t(first_ + sector), unsigned(n))) return false;
    blockSector_ = sector;
    blockSectors_ = n;
    return true;
}

qint64 DiscSectorStream::read(char* buffer, quint64 bytes) {
    if (cancelled_) return -1;
    if (offset_ >= size()) return 0;
    const qint64 sector = offset_ / layout_.payloadBytes;
    if (sector < blockSector_ || sector >= blockSector_ + blockSectors_) {
        if (!fill(sector)) return -1;
    }
    // Whole sectors run on into the next; a sector's carried part ends with the sector.
    const qint64 inSector = offset_ % layout_.payloadBytes;
    const qint64 at = (sector - blockSector_) * layout_.rawBytes + layout_.payloadOffset + inSector;
    const qint64 available = layout_.payloadBytes == layout_.rawBytes
                                 ? qint64(block_.size()) - at
                                 : layout_.payloadBytes - inSector;
    const qint64 n = std::min<qint64>(qint64(bytes), available);
    std::memcpy(buffer, block_.data() + at, size_t(n));
    offset_ += n;
    return n;
}

qint64 DiscSectorStream::seek(qint64 offset) {
    if (offset < 0 || offset > size()) return -1;
    offset_ = offset;
    return offset;
}

}  // namespace cantovel
