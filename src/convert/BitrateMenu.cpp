#include "convert/BitrateMenu.h"

#include <QAction>
#include <QMenu>

#include "app/Runtime.h"
#include "app/Settings.h"

namespace cantovel {

namespace {
constexpr qint32 kRates[] = {32000, 64000, 128000, 256000};
constexpr int kDefaultIndex = 2;

int storedIndex(const QString& setting) {
    const int index = int(Val(ReadAppSetting(setting, QString::number(kDefaultIndex))));
    return index >= 0 && index < 4 ? index : kDefaultIndex;
}
}  // namespace

BitrateMenu::BitrateMenu(QMenu* parent, const QString& setting)
    : QObject(parent), setting_(setting) {
    mnuBitrateMain = parent->addMenu(QStringLiteral("&Bitrate"));
    for (int i = 0; i < 4; ++i) {
        mnuBitrate[i] = mnuBitrateMain->addAction(QString::number(kRates[i] / 1000));
        mnuBitrate[i]->setCheckable(true);
        connect(mnuBitrate[i], &QAction::triggered, this, [this, i] { mnuBitrate_Click(i); });
    }
    mnuBitrate[storedIndex(setting_)]->setChecked(true);
}

void BitrateMenu::mnuBitrate_Click(int index) {
    for (QAction* a : mnuBitrate) a->setChecked(false);
    mnuBitrate[index]->setChecked(true);
    SaveAppSetting(setting_, QString::number(index));
}

qint32 BitrateMenu::storedBitrate() const {
    return kRates[storedIndex(setting_)];
}

qint32 BitrateMenu::bitsPerSecond(int index) {
    return index >= 0 && index < 4 ? kRates[index] : kRates[kDefaultIndex];
}

}  // namespace cantovel
