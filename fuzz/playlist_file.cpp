// A playlist file: any bytes give rows that name existing files, and the rows written out
// read back the same.
#include <QDir>
#include <QFile>

#include "FuzzInput.h"
#include "playlist/PlaylistFile.h"

using namespace cantovel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // A file the list may name, so that lines can hit as well as miss. Its place is fixed
    // so that the seeds can name it.
    static const QString song = QStringLiteral("/tmp/cantovel-fuzz-playlist/song.mp3");
    static const bool ready = QDir().mkpath(QStringLiteral("/tmp/cantovel-fuzz-playlist")) &&
                              (QFile::exists(song) || QFile(song).open(QIODevice::WriteOnly));
    fuzz::require(ready);
    const QString list = fuzz::writeInput(QStringLiteral("list.m3u"), data, size);
    const QStringList rows = PlaylistFile::ReadPlaylist(list);
    for (const QString& row : rows) fuzz::require(!row.isEmpty() && QFile::exists(row));

    const QString copy = fuzz::scratchFolder() + QStringLiteral("/copy.ply");
    fuzz::require(PlaylistFile::WritePlaylist(copy, rows));
    const QStringList again = PlaylistFile::ReadPlaylist(copy);
    // Rows that stood for the first list now stand for the copy.
    fuzz::require(again.size() == rows.size());
    for (qsizetype i = 0; i < rows.size(); ++i)
        fuzz::require(again[i] == rows[i] || (rows[i] == list && again[i] == copy));
    for (const QString& row : rows) PlaylistFile::RowName(row);
    return 0;
}
