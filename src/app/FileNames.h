#pragma once
// File names are bytes on Linux and need not be UTF-8, while the program keeps them as
// QStrings. Qt's own conversions turn bytes that are not UTF-8 into U+FFFD, losing the
// name, so every name that crosses into the file system or a library goes through here.
//
// The mapping: valid UTF-8 decodes as usual; each byte of an invalid sequence becomes the
// lone low surrogate U+DC00 + byte, which no valid UTF-8 yields, so encoding gives back
// exactly the bytes decoding was given. QString holds such surrogates as they are; only
// Qt's file classes must not see them, hence the helpers below.

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace cantovel {

QString NameFromBytes(QByteArrayView bytes);
QByteArray NameToBytes(QStringView name);

// The program's command line, from the process's own argument bytes.
QStringList ArgumentsFromArgv(int argc, const char* const* argv);

// Opens `file` (unopened, with no name of its own) on `name`'s bytes; a new file is made
// with the usual permissions when writing.
bool OpenByName(QFile& file, const QString& name, QIODevice::OpenMode mode);

// What lies at `name`, following symbolic links.
enum class NameKind { Missing, File, Folder, Other };
NameKind KindOfName(const QString& name);
// The size of the file at `name`; -1 when there is none.
qint64 SizeOfName(const QString& name);

// Makes a folder and any missing parents; true when it exists afterwards.
bool MakeFolderByName(const QString& name);

// The names of a folder's entries that are files (after following links), sorted;
// hidden ones included.
QStringList FilesInFolder(const QString& folder);

// Replaces the file at `name` with `bytes`: written aside in its folder and renamed over
// it, so readers see the old contents or the new, and a failed write leaves the old file
// as it was. A symbolic link stays and its target gets the new contents. `sync` waits
// until the disk has it; a file that is new gets `newFileMode` (less the umask).
bool ReplaceFileByName(const QString& name, const QByteArray& bytes, bool sync = false,
                       int newFileMode = 0666);
// Where a chain of symbolic links at `name` ends (the name itself when it is no link); a
// target that does not exist yet is still named.
QString LinkTargetOf(const QString& name);

}  // namespace cantovel
