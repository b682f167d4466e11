#include "support/TestVideoCd.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

namespace cantovel::test {

namespace {

constexpr int kFilmBytes = 2324;

QByteArray bcd(int v) {
    return QByteArray(1, char(((v / 10) << 4) | (v % 10)));
}

// Sync, header (address, mode 2), subheader twice, payload, a zero check.
QByteArray sector(int lba, char submode, const QByteArray& payload) {
    QByteArray s;
    s += char(0);
    s += QByteArray(10, char(0xff));
    s += char(0);
    const int a = lba + 150;
    s += bcd(a / 4500) + bcd((a / 75) % 60) + bcd(a % 75);
    s += char(2);
    const QByteArray sub = QByteArray("\x01\x01", 2) + submode + char(0x0f);
    s += sub + sub;
    s += payload.leftJustified(kFilmBytes, char(0), true);
    s += QByteArray(4, char(0));
    return s;
}

QString msf(int lba) {
    return QStringLiteral("%1:%2:%3")
        .arg(lba / 4500, 2, 10, QChar(u'0'))
        .arg((lba / 75) % 60, 2, 10, QChar(u'0'))
        .arg(lba % 75, 2, 10, QChar(u'0'));
}

}  // namespace

bool writeVideoCdImage(const QString& cue, int films, double seconds) {
    QTemporaryDir work;
    const QString bin =
        QFileInfo(cue).path() + u'/' + QFileInfo(cue).completeBaseName() + QStringLiteral(".bin");
    QFile out(bin);
    if (!work.isValid() || !out.open(QIODevice::WriteOnly)) return false;
    QString sheet = QStringLiteral("FILE \"%1\" BINARY\n").arg(QFileInfo(bin).fileName());
    int lba = 0;
    sheet += QStringLiteral("  TRACK 01 MODE2/2352\n    INDEX 01 00:00:00\n");
    for (int i = 0; i < 300; ++i) out.write(sector(lba++, char(0x08), QByteArray()));
    for (int f = 0; f < films; ++f) {
        const QString mpg = work.filePath(QStringLiteral("film%1.mpg").arg(f));
        QProcess ffmpeg;
        ffmpeg.start(QStringLiteral("ffmpeg"), {"-y",
                                                "-loglevel",
                                                "error",
                                                "-f",
                                                "lavfi",
                                                "-i",
                                                QStringLiteral("testsrc=size=352x288:rate=25"),
                                                "-f",
                                                "lavfi",
                                                "-i",
                                                "sine=sample_rate=44100",
                                                "-t",
                                                QString::number(seconds),
                                                "-c:v",
                                                "mpeg1video",
                                                "-c:a",
                                                "mp2",
                                                "-f",
                                                "vcd",
                                                mpg});
        if (!ffmpeg.waitForFinished(60000) || ffmpeg.exitCode() != 0) return false;
        QFile in(mpg);
        if (!in.open(QIODevice::ReadOnly)) return false;
        const QByteArray data = in.readAll();
        sheet += QStringLiteral("  TRACK %1 MODE2/2352\n    INDEX 01 %2\n")
                     .arg(f + 2, 2, 10, QChar(u'0'))
                     .arg(msf(lba));
        for (qsizetype at = 0; at < data.size(); at += kFilmBytes)
            out.write(sector(lba++, char(0x62), data.mid(at, kFilmBytes)));
    }
    if (!out.flush()) return false;
    QFile sheetFile(cue);
    return sheetFile.open(QIODevice::WriteOnly) && sheetFile.write(sheet.toUtf8()) > 0;
}

}  // namespace cantovel::test
