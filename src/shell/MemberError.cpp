#include "shell/MemberError.h"

#include <QtDebug>

#include "platform/Components.h"
#include "platform/msgbox/MsgBox.h"

namespace cantovel {

void MemberError::show(const QString& member, int number, const QString& description) {
    const QString text =
        QStringLiteral("Error: ") + QString::number(number) + QStringLiteral(". ") + description;
    // Without a message box service (a headless tool) the error can only go to the log.
    if (!Components::hasService<MsgBox>()) {
        qWarning().noquote() << member << text;
        return;
    }
    try {
        MsgBoxShow(text, Mb::OKOnly, member);
    } catch (...) {
        qWarning().noquote() << member << text;
    }
}

}  // namespace cantovel
