#include "support/TestFilms.h"

#include <QFileInfo>
#include <QProcess>

namespace cantovel::test {

bool writeTestFilm(const QString& path, double seconds, QSize size, const QString& colour) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    const QString source =
        colour.isEmpty() ? QStringLiteral("testsrc=") : QStringLiteral("color=c=%1:").arg(colour);
    const QString picture =
        QStringLiteral("%1size=%2x%3:rate=25").arg(source).arg(size.width()).arg(size.height());
    QStringList args{QStringLiteral("-y"),
                     QStringLiteral("-loglevel"),
                     QStringLiteral("error"),
                     QStringLiteral("-f"),
                     QStringLiteral("lavfi"),
                     QStringLiteral("-i"),
                     picture,
                     QStringLiteral("-f"),
                     QStringLiteral("lavfi"),
                     QStringLiteral("-i"),
                     QStringLiteral("sine=frequency=440:sample_rate=44100"),
                     QStringLiteral("-t"),
                     QString::number(seconds)};
    if (suffix == QLatin1String("mpg") || suffix == QLatin1String("mpeg"))
        args << QStringLiteral("-c:v") << QStringLiteral("mpeg1video") << QStringLiteral("-c:a")
             << QStringLiteral("mp2") << QStringLiteral("-f") << QStringLiteral("mpeg");
    else if (suffix == QLatin1String("mp4"))
        args << QStringLiteral("-c:v") << QStringLiteral("mpeg4") << QStringLiteral("-c:a")
             << QStringLiteral("aac") << QStringLiteral("-f") << QStringLiteral("mp4");
    else
        args << QStringLiteral("-c:v") << QStringLiteral("mpeg4") << QStringLiteral("-c:a")
             << QStringLiteral("mp3") << QStringLiteral("-f") << QStringLiteral("avi");
    args << path;
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("ffmpeg"), args);
    if (!ffmpeg.waitForFinished(60000)) return false;
    return ffmpeg.exitStatus() == QProcess::NormalExit && ffmpeg.exitCode() == 0 &&
           QFileInfo(path).size() > 0;
}

}  // namespace cantovel::test
