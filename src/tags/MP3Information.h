#pragma once
// The MP3 information command: shows the ID3 tag of the file the main window has loaded,
// in an information box. frmTemp's menu handler calls it with its one clsMP3 object and
// the main window's current file.

#include <QString>

namespace cantovel {

class clsMP3;

// The box's text for the tag that `mp3` holds, under the bare file name `file`.
QString MP3InformationText(const clsMP3& mp3, const QString& file);
// Reads the tag of `currentFile` into `mp3` and shows it, or says that no MP3 file is
// loaded when the path is empty or not an ".mp3" file (in any case of letters).
void ShowMP3Information(clsMP3& mp3, const QString& currentFile);

}  // namespace cantovel
