#pragma once
// Disc images and drives for the CD reader's tests: a CUE/BIN image whose samples are
// all different, and a CD drives layer that holds just the images a test adds.

#include <QByteArray>
#include <QDir>
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

// Drives "D", "E", ... for the images added; each has a folder of TrackNN.cda files below
// `root` when one is given.
class ImageDrives : public CdDrives {
  public:
    explicit ImageDrives(QString root = {}) : root_(std::move(root)) {}
    void add(const QString& image, int tracks = 0) {
        const QChar letter(char16_t(u'D' + drives.size()));
        drives.append({letter, QStringLiteral("image"), image});
        if (root_.isEmpty()) return;
        QDir().mkpath(TrackFolder(letter));
        for (int t = 1; t <= tracks; ++t) {
            QFile cda(TrackFolder(letter) +
                      QStringLiteral("/Track%1.cda").arg(t, 2, 10, QLatin1Char('0')));
            if (cda.open(QIODevice::WriteOnly)) cda.write("cda");
        }
    }
    QList<CdDrive> Drives() override { return drives; }
    QString TrackFolder(QChar letter) override {
        return root_.isEmpty() ? QString() : root_ + QLatin1Char('/') + letter;
    }
    CdDrive DriveOfPath(const QString& path) override {
        for (const CdDrive& d : drives)
            if (!root_.isEmpty() && path.startsWith(TrackFolder(d.Letter) + QLatin1Char('/')))
                return d;
        return {};
    }
    QList<CdDrive> drives;

  private:
    QString root_;
};

}  // namespace cantovel::test
