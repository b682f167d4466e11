#pragma once
// A Video CD disc image for tests: a CUE sheet and its BIN of raw Mode 2 sectors, the first
// track a blank data track, each further track one MPEG film that ffmpeg makes in the
// Video CD's own format, carried in Form 2 sectors.

#include <QString>

namespace cantovel::test {

// Writes `cue` and a ".bin" beside it with `films` films of `seconds` each; false when
// ffmpeg or a write failed.
bool writeVideoCdImage(const QString& cue, int films, double seconds);

}  // namespace cantovel::test
