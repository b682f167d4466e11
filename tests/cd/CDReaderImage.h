#pragma once
// Disc images and drives for the CD reader's tests: a CUE/BIN image whose samples are
// all different, and a CD drives layer that holds just the images a test adds.

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>
#include <initializer_list>

#include "platform/cddrives/CdDrives.h"

namespace cantovel::test {

// Writes `<dir>/<name>.cue` and its .bin: one audio track of each length in sectors.
// Returns the .cue's path, or empty on failure. `audio` of the whole disc: the .bin.
inline QString writeCdImage(const QString& dir, std::initializer_list<int> sectors,
                            const QString& name = QStringLiteral("disc")) {
    QFile bin(dir + QLatin1Char('/') + name + QStringLiteral(".bin"));
    if (!bin.open(QIODevice::WriteOnly)) return {};
    QByteArray cue = "FILE \"" + name.toUtf8() + ".bin\" BINARY\n";
    qint64 at = 0;
    int number = 1;
    for (int n : sectors) {
        cue += QStringLiteral("  TRACK %1 AUDIO\n    INDEX 01 %2:%3:%4\n")
                   .arg(number++, 2, 10, QLatin1Char('0'))
                   .arg(at / 4500, 2, 10, QLatin1Char('0'))
                   .arg(at % 4500 / 75, 2, 10, QLatin1Char('0'))
                   .arg(at % 75, 2, 10, QLatin1Char('0'))
                   .toLatin1();
        QByteArray data(n * 2352, '\0');
        for (int i = 0; i < data.size(); ++i) data[i] = char(((at * 2352 + i) * 7) / 3 ^ i >> 9);
        bin.write(data);
        at += n;
    }
    QFile file(dir + QLatin1Char('/') + name + QStringLiteral(".cue"));
    if (!file.open(QIODevice::WriteOnly)) return {};
    file.write(cue);
    return file.fileName();
}

// The bytes of sectors [first, first + count) of an image written above.
inline QByteArray cdImageAudio(const QString& cue, qint64 first, qint64 count) {
    QString binName = cue;
    binName.replace(QStringLiteral(".cue"), QStringLiteral(".bin"));
    QFile bin(binName);
    if (!bin.open(QIODevice::ReadOnly) || !bin.seek(first * 2352)) return {};
    return bin.read(count * 2352);
}

// Drives "D", "E", ... for the images added.
class ImageDrives : public CdDrives {
  public:
    void add(const QString& image) {
        drives.append({QChar(char16_t(u'D' + drives.size())), QStringLiteral("image"), image});
    }
    QList<CdDrive> Drives() override { return drives; }
    QString TrackFolder(QChar) override { return {}; }
    CdDrive DriveOfPath(const QString&) override { return {}; }
    QList<CdDrive> drives;
};

}  // namespace cantovel::test
