#include "platform/cddrives/CdaFile.h"

#include <QFile>
#include <QSaveFile>
#include <QtEndian>

namespace cantovel {

namespace {

constexpr int kSize = 44;
constexpr uint32_t kLeadIn = 150;  // two seconds of 75 sectors

void msf(uint32_t sectors, uint8_t& m, uint8_t& s, uint8_t& f) {
    m = static_cast<uint8_t>(sectors / 4500);
    s = static_cast<uint8_t>(sectors / 75 % 60);
    f = static_cast<uint8_t>(sectors % 75);
}

}  // namespace

CdaFile CdaFile::fromSectors(uint16_t track, uint32_t serial, uint32_t start, uint32_t length) {
    CdaFile c;
    c.Track = track;
    c.Serial = serial;
    c.Start = start;
    c.Length = length;
    msf(start + kLeadIn, c.StartMin, c.StartSec, c.StartFrame);
    msf(length, c.LengthMin, c.LengthSec, c.LengthFrame);
    return c;
}

QByteArray CdaFile::toBytes() const {
    QByteArray b(kSize, '\0');
    auto* p = reinterpret_cast<uchar*>(b.data());
    memcpy(p, "RIFF", 4);
    qToLittleEndian<uint32_t>(kSize - 8, p + 4);
    memcpy(p + 8, "CDDAfmt ", 8);
    qToLittleEndian<uint32_t>(24, p + 16);
    qToLittleEndian<uint16_t>(Version, p + 20);
    qToLittleEndian<uint16_t>(Track, p + 22);
    qToLittleEndian<uint32_t>(Serial, p + 24);
    qToLittleEndian<uint32_t>(Start, p + 28);
    qToLittleEndian<uint32_t>(Length, p + 32);
    // Red Book order: frame, second, minute, unused.
    p[36] = StartFrame, p[37] = StartSec, p[38] = StartMin;
    p[40] = LengthFrame, p[41] = LengthSec, p[42] = LengthMin;
    return b;
}

std::optional<CdaFile> CdaFile::fromBytes(const QByteArray& bytes) {
    if (bytes.size() < kSize || !bytes.startsWith("RIFF") || bytes.mid(8, 8) != "CDDAfmt ")
        return std::nullopt;
    const auto* p = reinterpret_cast<const uchar*>(bytes.constData());
    CdaFile c;
    c.Version = qFromLittleEndian<uint16_t>(p + 20);
    c.Track = qFromLittleEndian<uint16_t>(p + 22);
    c.Serial = qFromLittleEndian<uint32_t>(p + 24);
    c.Start = qFromLittleEndian<uint32_t>(p + 28);
    c.Length = qFromLittleEndian<uint32_t>(p + 32);
    c.StartFrame = p[36], c.StartSec = p[37], c.StartMin = p[38];
    c.LengthFrame = p[40], c.LengthSec = p[41], c.LengthMin = p[42];
    return c;
}

bool CdaFile::write(const QString& path) const {
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly)) return false;
    const QByteArray b = toBytes();
    if (f.write(b) != b.size()) {
        f.cancelWriting();
        return false;
    }
    return f.commit();
}

std::optional<CdaFile> CdaFile::read(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return std::nullopt;
    return fromBytes(f.read(kSize));
}

}  // namespace cantovel
