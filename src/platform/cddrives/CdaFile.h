#pragma once
// The CD audio track file: a 44-byte RIFF "CDDA" file that stands for one audio track of a
// disc. Its fields are little-endian; the disc serial sits at byte 24.

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <optional>

namespace cantovel {

struct CdaFile {
    uint16_t Version = 1;
    uint16_t Track = 0;
    uint32_t Serial = 0;
    uint32_t Start = 0;   // first sector of the track, counted from the start of the program area
    uint32_t Length = 0;  // sectors
    // The same two in minutes, seconds and frames; the start counts the two-second lead-in.
    uint8_t StartMin = 0, StartSec = 0, StartFrame = 0;
    uint8_t LengthMin = 0, LengthSec = 0, LengthFrame = 0;

    // Fills both forms from sector numbers.
    static CdaFile fromSectors(uint16_t track, uint32_t serial, uint32_t start, uint32_t length);

    QByteArray toBytes() const;
    // Nothing when the bytes are not a CD audio track file.
    static std::optional<CdaFile> fromBytes(const QByteArray& bytes);

    // Writes atomically; false when the file could not be written.
    bool write(const QString& path) const;
    static std::optional<CdaFile> read(const QString& path);
};

}  // namespace cantovel
