#pragma once
// The About window: the program's name, version and maker, and what it stands on.

#include "app/Form.h"

class QLabel;
class QPushButton;

namespace cantovel {

class frmAbout : public Form {
    Q_OBJECT
  public:
    frmAbout();

    QLabel* lblTitle;
    QLabel* lblVersion;
    QLabel* lblText;
    QPushButton* cmdOK;
};

}  // namespace cantovel
