#pragma once
// The video player's recently used films: a list in the registry mirrored on the five rows
// of its File menu. Row 0 is the separator above the list, rows 1 to 4 the entries, newest
// first; each row keeps its entry's tag in its data.

#include <QString>
#include <array>

#include "platform/registry/Registry.h"

class QAction;

namespace cantovel {

class VideoPlayerMru {
  public:
    static constexpr int MaxMRUItems = 4;

    VideoPlayerMru(RegRoot root, const QString& registryPath, const QString& subKey);

    // Ties menu row `index` (0 to MaxMRUItems) to the list; other indexes are ignored.
    void setMenuItem(int index, QAction* row);
    // Reads the registry and rebuilds the rows: gaps close up, numbers run 1, 2, 3.
    void GetMRUList();
    // Puts `item` at the top with `tag` (a path already listed, in any case, moves up);
    // the empty item clears the list.
    void SetMRUList(const QString& item, const QString& tag);

    QString key() const;

  private:
    QString read(const QString& name) const;
    void write(const QString& name, const QString& value) const;

    RegRoot root_;
    QString registryPath_, subKey_;
    QString prefix_ = QStringLiteral("MRU"), tagPrefix_ = QStringLiteral("MRUTag");
    std::array<QAction*, MaxMRUItems + 1> rows_{};
};

}  // namespace cantovel
