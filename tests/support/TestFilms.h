#pragma once
// Films for tests, made by ffmpeg from its test pattern and a tone.

#include <QSize>
#include <QString>

namespace cantovel::test {

// A film of `seconds` with a picture of `size` at 25 frames a second and a sine tone. The
// picture is ffmpeg's test pattern, or one plain colour (an ffmpeg colour name such as
// "red") where `colour` names one. The container follows the extension (".avi" MPEG-4 in
// AVI, ".mpg" MPEG-1 system stream, ".mp4" MPEG-4 with AAC); any other extension gets an
// AVI under that name. False when ffmpeg failed.
bool writeTestFilm(const QString& path, double seconds, QSize size = QSize(320, 240),
                   const QString& colour = {});

}  // namespace cantovel::test
