#pragma once
// The "&Bitrate" menu of the MP3 windows: four constant bit rates, one checked, the
// choice written to the window's setting at once.

#include <QObject>
#include <array>

class QAction;
class QMenu;

namespace cantovel {

class BitrateMenu : public QObject {
    Q_OBJECT
  public:
    // Builds the menu in `parent` and checks the entry the setting names.
    BitrateMenu(QMenu* parent, const QString& setting);

    QMenu* mnuBitrateMain;
    std::array<QAction*, 4> mnuBitrate{};

    // Unchecks all four, checks `index` and writes it.
    void mnuBitrate_Click(int index);
    // The bits a second of the stored choice.
    qint32 storedBitrate() const;
    // 32000, 64000, 128000, 256000 for 0 to 3; 128000 for anything else.
    static qint32 bitsPerSecond(int index);

  private:
    QString setting_;
};

}  // namespace cantovel
