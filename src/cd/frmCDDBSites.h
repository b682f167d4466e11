#pragma once
// "CDDB Sites": the CDDB server's own list of servers, fetched when the window loads; a
// chosen address and port become the server the next look-up asks.

#include "app/Form.h"

class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace cantovel {

class CdBase;

class frmCDDBSites : public Form {
    Q_OBJECT
  public:
    explicit frmCDDBSites(CdBase& cdBase);

    QLineEdit* txtAddress;
    QLineEdit* txtPort;
    QTreeWidget* lvwSites;
    QPushButton* cmdAccept;
    QPushButton* cmdCancel;

    void Form_Load();
    void lvwSites_Click();
    void cmdAccept_Click();
    void cmdCancel_Click();

  private:
    CdBase& CdBase1;
};

}  // namespace cantovel
