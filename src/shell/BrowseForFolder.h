#pragma once
#include <QString>

class QWidget;

namespace cantovel {

// Asks for a folder with `prompt`, starting at `startFolder`. A cancelled dialog gives the
// empty text.
QString BrowseForFolder(QWidget* owner, const QString& prompt, const QString& startFolder = {});

}  // namespace cantovel
