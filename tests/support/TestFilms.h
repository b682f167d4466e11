#pragma once
// Films for tests, made by ffmpeg from its test pattern and a tone.

#include <QSize>
#include <QString>

namespace cantovel::test {

// A film of `seconds` with a picture of `size` at 25 frames a second and a sine tone. The
// container follows the extension (".avi" MPEG-4 in AVI, ".mpg" MPEG-1 system stream);
// any other extension gets an AVI under that name. False when ffmpeg failed.
bool writeTestFilm(const QString& path, double seconds, QSize size = QSize(320, 240));

}  // namespace cantovel::test
