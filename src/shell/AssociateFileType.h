#pragma once
// Binds one file extension to the program: the file type keys under HKEY_CLASSES_ROOT,
// mirrored on the desktop.

#include <QString>

namespace cantovel {

// Writes everything of one type; true when the writes of the type's key and its command
// went through. Empty arguments take their defaults: the program's title as `ProgID`,
// the running program as `AppPath`, the program's icon, "Open" as `Verb`, "System" as
// `DdeTopic`; an empty `VerbCaption`, `ContentType` or `DdeMessage` removes what stood
// there. With `KeepExisting` the key the extension already has is worked on.
bool AssociateFileType(const QString& Extension, const QString& ProgID = {},
                       const QString& AppPath = {}, const QString& AppArgs = {},
                       const QString& IconSpec = {}, bool KeepExisting = false,
                       const QString& Description = {}, const QString& Verb = {},
                       const QString& VerbCaption = {}, const QString& ContentType = {},
                       const QString& DdeMessage = {}, const QString& DdeTopic = {});

// The full path of the running program.
QString ProgramPath();

}  // namespace cantovel
