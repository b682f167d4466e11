#pragma once
#include "platform/msgbox/MsgBox.h"

namespace cantovel {

// Message boxes on QMessageBox.
class QtMsgBox : public MsgBox {
public:
    int show(const QString& text, int style, const QString& title, QWidget* owner) override;
};

}  // namespace cantovel
