#include "tags/CCRC32.h"

#include <zlib.h>

#include <QFile>
#include <QFileInfo>
#include <vector>

#include "platform/msgbox/MsgBox.h"

namespace cantovel {

namespace {

constexpr std::array<quint32, 256> makeTable() {
    std::array<quint32, 256> table{};
    for (quint32 n = 0; n < 256; ++n) {
        quint32 c = n;
        for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
        table[n] = c;
    }
    return table;
}
constexpr std::array<quint32, 256> CrcTable = makeTable();
static_assert(CrcTable[1] == 0x77073096u && CrcTable[128] == 0xEDB88320u);

// Shows the failure as the runtime would word it; the caller then tries again.
void reportFailure(int number, const QString& text) {
    MsgBoxShow(QStringLiteral("Error: %1. %2").arg(number).arg(text));
}

// Opens the file for reading, asking again after each failure.
void openForReading(QFile& file) {
    while (!file.open(QIODevice::ReadOnly)) {
        const QFileInfo info(file.fileName());
        if (!info.exists())
            reportFailure(53, QStringLiteral("File not found"));
        else if (info.isDir())
            reportFailure(75, QStringLiteral("Path/File access error"));
        else
            reportFailure(70, QStringLiteral("Permission denied"));
    }
}

// Reads exactly `size` bytes at `offset`, asking again after each failure.
void readAt(QFile& file, qint64 offset, char* into, qint64 size) {
    while (!file.seek(offset) || file.read(into, size) != size)
        reportFailure(57, QStringLiteral("Device I/O error"));
}

}  // namespace

const std::array<quint32, 256>& CCRC32::Table() {
    return CrcTable;
}

quint32 CCRC32::GetCRCFromFile() {
    QFile file(inputFileName_);
    openForReading(file);
    const qint64 length = file.size();
    emit Progress(0.0f);

    // zlib's crc32 is this very CRC, inverted in and out, so it chains block by block.
    uLong crc = crc32(0L, Z_NULL, 0);
    qint64 total = 0;
    // Whole runs of blocks are read at once; progress still comes block by block.
    constexpr qint64 Run = qint64(BlockSize) * 32;
    std::vector<char> buffer(Run);
    qint64 next = 1;  // position of the next byte, counted from 1
    while (next < length) {
        // A block is BlockSize bytes, or the rest once that reaches past the end. The test
        // is strict, so a last byte alone (next == length) is never read.
        const qint64 blocks = std::min<qint64>(32, (length - next) / BlockSize + 1);
        const qint64 runBytes = std::min<qint64>(blocks * BlockSize, length - next + 1);
        readAt(file, next - 1, buffer.data(), runBytes);
        for (qint64 done = 0; done < runBytes && next < length;) {
            const qint64 block = next + BlockSize > length ? length - next + 1 : qint64(BlockSize);
            crc = crc32(crc, reinterpret_cast<const Bytef*>(buffer.data() + done), uInt(block));
            done += block;
            next += block;
            total += block;
            emit Progress(float(double(total) / double(length)));
        }
    }
    file.close();
    return quint32(crc);
}

quint32 CCRC32::GetCRCFromString(const QString& text) {
    std::vector<quint8> bytes;
    bytes.reserve(size_t(text.size()) * 2);
    for (const QChar ch : text) {
        bytes.push_back(quint8(ch.unicode() & 0xFF));
        bytes.push_back(quint8(ch.unicode() >> 8));
    }
    emit Progress(0.0f);
    quint32 crc = 0xFFFFFFFFu;
    const size_t last = bytes.empty() ? 0 : bytes.size() - 1;
    for (size_t i = 0; i < bytes.size(); ++i) {
        crc = update(crc, bytes[i]);
        // Every byte reports but those at multiples of 4096.
        if (i % 4096 != 0) emit Progress(float(double(i) / double(last)));
    }
    emit Progress(1.0f);
    return ~crc;
}

}  // namespace cantovel
