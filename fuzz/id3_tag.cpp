// An MP3 file's last 128 bytes: any file gives a tag of bounded fields and a four-character
// year.
#include "FuzzInput.h"
#include "tags/clsMP3.h"

using namespace cantovel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    clsMP3 mp3;
    mp3.setFileName(fuzz::writeInput(QStringLiteral("input.mp3"), data, size));
    fuzz::require(mp3.Year().size() == 4);
    fuzz::require(mp3.Title().size() <= 30 && mp3.Artist().size() <= 30 &&
                  mp3.Album().size() <= 30 && mp3.Comment().size() <= 30);
    const QString genre = mp3.Genre();
    fuzz::require(genre.isEmpty() || clsMP3::GenreList().contains(genre));
    return 0;
}
