#pragma once
// A most-recently-used list of files kept in the settings store and mirrored onto menu
// rows: row 0 is the separator above the list, rows 1 up carry "&1. path" and the entry's
// tag. The main window, the playlist window and the video player each keep one.

#include <QAction>
#include <QList>
#include <QPointer>
#include <QString>

#include "platform/registry/Registry.h"
#include "player/MruList.h"

namespace cantovel {

class CMRU : public MruList {
  public:
    CMRU();

    qint16 MaxMRUItems() const { return maxItems_; }
    void setMaxMRUItems(qint16 n);
    // Row `index`, 0 to MaxMRUItems; other indexes are refused in silence.
    QAction* MenuItem(int index) const;
    void setMenuItem(int index, QAction* item);

    QString Prefix = QStringLiteral("MRU");
    QString RegistryPath;
    RegRoot RootKey = RegRoot::LocalMachine;
    QString SubKey;
    QString TagPrefix = QStringLiteral("MRUTAG");

    // Reads the list and rebuilds the menu rows: gaps close up, numbers run 1, 2, 3.
    void GetMRUList();
    // Puts `Item` at the top with `Tag` (a path already listed, in any case, moves up and
    // takes the new tag); the empty item empties every entry.
    void SetMRUList(const QString& Item, const QString& Tag) override;

    // The path of a row's caption "&N. path", and the row's tag.
    static QString PathOfCaption(const QString& caption);
    static QString TagOf(const QAction* row);

  private:
    QString key() const;
    QString readValue(const QString& name) const;
    bool writeValue(const QString& name, const QString& value) const;

    qint16 maxItems_ = 4;
    QList<QPointer<QAction>> rows_;
};

}  // namespace cantovel
