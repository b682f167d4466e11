#pragma once
// The disclaimer: what the program promises, and what it does not.

#include "app/Form.h"

class QLabel;
class QPushButton;

namespace cantovel {

class frmDisclaimer : public Form {
    Q_OBJECT
  public:
    frmDisclaimer();

    QLabel* lblDisclaimer;
    QPushButton* cmdOK;
};

}  // namespace cantovel
