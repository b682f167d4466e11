#pragma once
// The standard CRC-32 (IEEE 802.3, reflected, polynomial 0xEDB88320) of a file or a text,
// reporting progress from 0 to 1 as it goes.
//
// Two results are kept as they always were:
//  - A file is read in blocks of 32767 bytes, and a last byte that would stand alone in its
//    block is never read: a file of one byte, or of 32767 * k + 1 bytes, gives the CRC of
//    all but its last byte.
//  - A text is taken as the bytes it occupies in memory, two to a character, low byte first
//    (UTF-16LE), and not in any 8-bit form.
//
// A file that cannot be opened or read shows "Error: <number>. <text>" and then tries the
// same step again, for as long as the failure lasts.

#include <QObject>
#include <QString>
#include <array>
#include <cstdint>

namespace cantovel {

class CCRC32 : public QObject {
    Q_OBJECT
  public:
    explicit CCRC32(QObject* parent = nullptr) : QObject(parent) {}

    QString InputFileName() const { return inputFileName_; }
    void setInputFileName(const QString& name) { inputFileName_ = name; }

    // The CRC-32 of the file named by InputFileName.
    quint32 GetCRCFromFile();
    // The CRC-32 of the text's UTF-16LE bytes.
    quint32 GetCRCFromString(const QString& text);

    // The byte table, entry b being the CRC remainder of the single byte b.
    static const std::array<quint32, 256>& Table();
    // One byte into the running value.
    static quint32 update(quint32 crc, quint8 byte) {
        return (crc >> 8) ^ Table()[(crc ^ byte) & 0xFF];
    }

    // The most a block read takes.
    static constexpr int BlockSize = 32767;

  signals:
    void Progress(float fraction);

  private:
    QString inputFileName_;
};

}  // namespace cantovel
