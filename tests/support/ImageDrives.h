#pragma once
// A CD drives layer that holds just the disc images a test adds, whatever drives the
// machine has. Each drive is named after its image file.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QString>

#include "platform/cddrives/CdDrives.h"

namespace cantovel::test {

// Drives "D", "E", ... for the images added; each has a folder of TrackNN.cda files below
// `root` when one is given.
class ImageDrives : public CdDrives {
  public:
    explicit ImageDrives(QString root = {}) : root_(std::move(root)) {}
    void add(const QString& image, int tracks = 0) {
        const QChar letter(char16_t(u'D' + drives.size()));
        drives.append({letter, QFileInfo(image).fileName(), image});
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
