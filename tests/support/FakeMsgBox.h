#pragma once
// Records every message box and answers from a script.

#include <QList>
#include <QString>
#include <deque>

#include "platform/msgbox/MsgBox.h"

namespace cantovel::test {

struct ShownBox {
    QString text;
    int style = 0;
    QString title;
    int icon() const { return Mb::iconOf(style); }
    int buttons() const { return Mb::buttonsOf(style); }
};

class FakeMsgBox : public MsgBox {
  public:
    int show(const QString& text, int style, const QString& title, QWidget* owner) override;

    // The next boxes answer these, in order; after that each box answers its default button.
    void script(std::initializer_list<int> answers) { answers_.insert(answers_.end(), answers); }
    // Runs while a box is "open", as a user could act then (for instance end the program).
    std::function<void(const ShownBox&)> onShow;

    QList<ShownBox> shown;
    QStringList texts() const;
    void reset() {
        shown.clear();
        answers_.clear();
    }

  private:
    std::deque<int> answers_;
};

}  // namespace cantovel::test
