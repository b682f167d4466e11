#pragma once
// The program's help: a folder of pages, one a topic, with a contents page. It lies in
// the program's data folder ("Help" beside the program, the installed share folder, or the
// source tree's resources when run from a build); CANTOVEL_HELP_DIR names another.

#include <QString>

namespace cantovel {

// The folder the help pages are taken from.
QString HelpFolder();
// The help's contents page, which mnuHelpFile opens.
QString HelpFilePath();
// The page of a topic ("Playlists", "Convert WAV to MP3", ...).
QString HelpTopicPath(const QString& topic);
// Opens a topic's page with the desktop's handler; a missing page opens the contents.
// The messages are those of the help command.
void ShowHelpTopic(const QString& topic);
// Opens the contents page, with the same messages.
void OpenHelpContents();

}  // namespace cantovel
