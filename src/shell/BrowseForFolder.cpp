#include "shell/BrowseForFolder.h"

#include "platform/dialogs/FileDialogs.h"

namespace cantovel {

QString BrowseForFolder(QWidget* owner, const QString& prompt, const QString& startFolder) {
    return FileDialogs::get().browseForFolder(owner, prompt, startFolder);
}

}  // namespace cantovel
