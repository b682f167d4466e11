#pragma once
// The main window's list of recently used media files, mirrored on frmTemp's
// mnuFileMRU rows. Each entry carries a tag, "File length: " and the size in bytes.

#include <QString>

namespace cantovel {

class MruList {
  public:
    virtual ~MruList() = default;

    // Puts `item` at the top with its tag; the empty item clears the list.
    virtual void SetMRUList(const QString& item, const QString& tag) = 0;
};

}  // namespace cantovel
