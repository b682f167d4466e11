#pragma once
// The playlist file: one full path a line, in the system's 8-bit encoding, every line
// ended by CR LF. ".ply" and ".m3u" are the same format; nothing else is ever written.

#include <QString>
#include <QStringList>

namespace cantovel {

class PlaylistFile {
  public:
    // The rows a playlist file gives, in file order: empty lines and "#" lines fall away,
    // an existing file is taken as it stands, and any other line (but ":" alone) stands
    // for the playlist file itself. A file that cannot be read, or holds a NUL byte (no
    // text does), gives no rows.
    static QStringList ReadPlaylist(const QString& playlistPath);
    // Media metafiles a player is given: ".m3u" and the ASX family (".asx", ".wax", ".wvx").
    static bool IsMetafile(const QString& path);
    // A metafile's entries in order: ".m3u" lines ("#" lines passed over) or the ASX
    // family's <Ref href> values; relative ones are taken from the metafile's folder.
    // Empty for anything else, or for a file too big or not text.
    static QStringList MetafileEntries(const QString& path);
    // Writes the rows, replacing the file's contents; false when the file can't be written.
    static bool WritePlaylist(const QString& playlistPath, const QStringList& rows);
    // The name a row shows in the playlist window: its file name with extension.
    static QString RowName(const QString& path);
};

}  // namespace cantovel
