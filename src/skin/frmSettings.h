#pragma once
// "General Settings": the values that belong to no one window: the skin, the folder for
// temporary files, the CD drive for audio play, and four switches.

#include <memory>

#include "app/Form.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

namespace cantovel {

class CDReader;

class frmSettings : public Form {
    Q_OBJECT
  public:
    frmSettings();
    ~frmSettings() override;

    QCheckBox* Check2;        // "&Save Cantovel's Position"
    QCheckBox* Check3;        // "Cantovel is Always On &Top"
    QCheckBox* Check6;        // "&Loop Media Play"
    QCheckBox* chkExtension;  // "Show File E&xtension on Main Window"
    QLabel* lblSkinPath;
    QPushButton* cmdSkinPath;
    QLabel* Label2;  // the temporary files' folder
    QPushButton* Command3;
    QComboBox* DevCombo;
    QPushButton* Command1;  // OK
    QPushButton* Command2;  // Default
    QPushButton* cmdCancel;
    // Lists the drives and keeps the one for audio play in its own settings; null when no
    // CD reader is provided.
    std::unique_ptr<cantovel::CDReader> CDReader;

    void Form_Load();
    void DevCombo_Click();
    void cmdSkinPath_Click();
    void Command3_Click();
    void Command1_Click();
    void Command2_Click();
    void cmdCancel_Click();

    // An input filter for typed characters: a printable character that is no digit and no
    // "." becomes 0.
    static int KeyNumbers(int KeyAscii);

    static constexpr const char* DefaultSkin = "[Default Skin]";
};

}  // namespace cantovel
