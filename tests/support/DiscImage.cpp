#include "support/DiscImage.h"

#include <QDir>
#include <QFile>
#include <QTextStream>
#include <QtEndian>
#include <cmath>
#include <numbers>

namespace cantovel::test {

namespace {

QString msf(int sectors) {
    return QStringLiteral("%1:%2:%3")
        .arg(sectors / 4500, 2, 10, QLatin1Char('0'))
        .arg(sectors / 75 % 60, 2, 10, QLatin1Char('0'))
        .arg(sectors % 75, 2, 10, QLatin1Char('0'));
}

}  // namespace

int16_t DiscImage::sample(int track, int64_t frame, int channel) {
    // A tone per track and channel, so the disc is pleasant to listen to, with a hashed low
    // part so that every position differs and an offset error of any size shows.
    const double hz = 220.0 * (1 + track % 8) * (channel ? 1.5 : 1.0);
    const double tone = 6000.0 * std::sin(2 * std::numbers::pi * hz * double(frame) / 44100.0);
    uint32_t h = uint32_t(frame) * 2654435761u ^ uint32_t(track * 40503 + channel * 977);
    h ^= h >> 15;
    return int16_t(std::lround(tone) + int(h & 0x3FF) - 512);
}

QByteArray DiscImage::pcm(int track, int first, int count) {
    QByteArray out(qsizetype(count) * kSectorBytes, '\0');
    auto* p = reinterpret_cast<uchar*>(out.data());
    const int64_t base = int64_t(first) * (kSectorBytes / 4);
    for (int64_t i = 0; i < int64_t(count) * (kSectorBytes / 4); ++i) {
        qToLittleEndian<int16_t>(sample(track, base + i, 0), p + i * 4);
        qToLittleEndian<int16_t>(sample(track, base + i, 1), p + i * 4 + 2);
    }
    return out;
}

DiscImage DiscImage::build(const QString& folder, const QList<int>& audioSectors, Data data,
                           const QString& name, int dataSectors) {
    DiscImage d;
    QDir().mkpath(folder);
    d.cue_ = folder + QLatin1Char('/') + name + QStringLiteral(".cue");
    d.bin_ = folder + QLatin1Char('/') + name + QStringLiteral(".bin");
    QList<int> lengths = audioSectors;
    if (data == Data::First) lengths.prepend(dataSectors);
    if (data == Data::Last) lengths.append(dataSectors);
    d.dataTrack_ = data == Data::First ? 1 : data == Data::Last ? int(lengths.size()) : 0;
    d.sectors_ = lengths;

    QFile bin(d.bin_);
    QFile cue(d.cue_);
    if (!bin.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        !cue.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return d;
    QTextStream text(&cue);
    text << "FILE \"" << name << ".bin\" BINARY\n";
    int at = 0;
    for (int i = 0; i < lengths.size(); ++i) {
        const int track = i + 1;
        const bool audio = d.isAudio(track);
        text << QStringLiteral("  TRACK %1 ").arg(track, 2, 10, QLatin1Char('0'))
             << (audio ? "AUDIO" : "MODE1/2352") << "\n"
             << "    INDEX 01 " << msf(at) << "\n";
        d.starts_.append(at);
        // Written a second at a time so a long disc never sits in memory whole.
        for (int s = 0; s < lengths[i]; s += kSectorsPerSecond) {
            const int n = std::min(kSectorsPerSecond, lengths[i] - s);
            const QByteArray bytes =
                audio ? pcm(track, s, n) : QByteArray(qsizetype(n) * kSectorBytes, '\0');
            if (bin.write(bytes) != bytes.size()) return d;
        }
        at += lengths[i];
    }
    text.flush();
    d.ok_ = bin.flush() && text.status() == QTextStream::Ok;
    return d;
}

DiscImage DiscImage::buildSeconds(const QString& folder, const QList<int>& audioSeconds, Data data,
                                  const QString& name) {
    QList<int> sectors;
    for (int s : audioSeconds) sectors.append(s * kSectorsPerSecond);
    return build(folder, sectors, data, name);
}

}  // namespace cantovel::test
