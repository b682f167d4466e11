#pragma once
// Records what goes to the recently used files.

#include <QList>
#include <QString>
#include <utility>

#include "player/MruList.h"

namespace cantovel::test {

class FakeMruList : public MruList {
  public:
    void SetMRUList(const QString& item, const QString& tag) override {
        added << std::pair{item, tag};
    }

    QList<std::pair<QString, QString>> added;
};

}  // namespace cantovel::test
