#pragma once
// The desktop's side of the file types the program binds in its registry: a desktop
// entry per file type key, the MIME defaults of the bound extensions (the freedesktop
// mimeapps.list of the user) and the shared MIME data of the program's own playlist type.
// The registry's file types stay the record; this only mirrors them where the desktop
// looks, in the user's own data and configuration folders.

#include <QString>
#include <QStringList>

namespace cantovel {

class DesktopAssociations {
  public:
    // The switch of the command line that hands a path to the running instance.
    static QString handOffSwitch() { return QStringLiteral("--hand-off"); }

    // The desktop entry that stands for a file type key: the program's own key is the
    // program's entry "cantovel.desktop"; any other key gets one of its own.
    static QString desktopIdFor(const QString& progId);
    // The MIME type of an extension (with its dot, any case); empty when none is known.
    static QString mimeTypeFor(const QString& extension);

    // Writes the entry of a file type key. With `handOff` the entry starts the program in
    // its hand-off mode, so a path reaches the running instance.
    static bool writeEntry(const QString& progId, const QString& description,
                           const QString& appPath, const QString& appArgs, bool handOff);
    // Makes an entry the default for an extension's MIME type (`contentType` when given).
    // The user's files change only where a binding changes.
    static bool bind(const QString& extension, const QString& desktopId,
                     const QString& contentType = {});
    // Puts back an extension's former file type key: when a desktop entry of that name
    // exists it becomes the default again; otherwise the program's default for the type is
    // taken away, so the desktop's own choice holds. A type that another extension still
    // binds to the same entry is left alone.
    static void restore(const QString& extension, const QString& progId);

    // The user's default entry for a MIME type, as the user's mimeapps.list says.
    static QString defaultFor(const QString& mimeType);
    // Installs the program's MIME package (its playlists, CD tracks and the MPEG names the
    // shared database lacks) in the user's data folder.
    static bool installMimePackage();

    static QString applicationsFolder();
    static QString mimeAppsPath();

    // The Exec line of an entry: the program, its arguments, the switch, then the path.
    static QString execLine(const QString& appPath, const QString& appArgs, bool handOff);
    // One argument of an Exec line, quoted where the desktop entry rules want it.
    static QString quoteExecArgument(const QString& argument);

  private:
    static bool addMimeTypeToEntry(const QString& desktopId, const QString& mimeType);
    static bool entryExists(const QString& desktopId);
    static bool setDefault(const QString& mimeType, const QString& desktopId);
    static bool removeDefault(const QString& mimeType, const QString& onlyIfDesktopId);
};

}  // namespace cantovel
