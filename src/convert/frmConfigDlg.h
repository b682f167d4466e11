#pragma once
// "CD Conversion Options...": the reader's copy parameters, the drive's type, the sectors
// a read and the copy mode.

#include <array>

#include "app/Form.h"

class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace cantovel {

class CDReader;

class frmConfigDlg : public Form {
    Q_OBJECT
  public:
    // `reader` is the owner's; it outlives the dialog.
    frmConfigDlg(CDReader* reader, QWidget* owner);

    QComboBox* comboDeviceType;
    QLineEdit* edBlockCount;
    QLineEdit* edDeviceName;
    std::array<QRadioButton*, 3> Option1{};  // by CopyMode: normal, burst, sector sync
    QPushButton* btnOK;
    QPushButton* btnCancel;

    void Form_Load();
    void btnOK_Click();
    void btnCancel_Click();

    // The drive types, in the order of their numbers.
    static const QStringList DeviceTypes;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    CDReader* reader_;
};

}  // namespace cantovel
