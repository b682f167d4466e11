#pragma once
// "Select From Close Matches": one line per close match of an inexact CDDB answer; the
// chosen row (or, closed without a choice, the first) is the one the look-up reads.

#include "app/Form.h"

class QListWidget;
class QPushButton;

namespace cantovel {

class frmCDDBMatches : public Form {
    Q_OBJECT
  public:
    frmCDDBMatches();

    QListWidget* lstMatches;
    QPushButton* cmdSelect;

    void cmdSelect_Click();

    // Places the window (0 centres it on that axis), shows it modally and returns once a
    // row is in MatchCategory, MatchDiscId and MatchTitle.
    static void choose(int left, int top);

  protected:
    bool unloadEvent() override;

  private:
    void take(int row);
};

}  // namespace cantovel
