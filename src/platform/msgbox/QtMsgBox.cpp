#include "platform/msgbox/QtMsgBox.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include "platform/Components.h"
#include "platform/clock/Clock.h"

namespace cantovel {

MsgBox& MsgBox::get() { return Components::service<MsgBox>(); }

int MsgBoxShow(const QString& text, int style, const QString& title, QWidget* owner) {
    return MsgBox::get().show(text, style, title, owner);
}

int QtMsgBox::show(const QString& text, int style, const QString& title, QWidget* owner) {
    QMessageBox box(owner);
    box.setWindowTitle(title.isEmpty() ? QStringLiteral("Cantovel") : title);
    box.setText(text);
    switch (Mb::iconOf(style)) {
        case Mb::Critical: box.setIcon(QMessageBox::Critical); break;
        case Mb::Question: box.setIcon(QMessageBox::Question); break;
        case Mb::Exclamation: box.setIcon(QMessageBox::Warning); break;
        case Mb::Information: box.setIcon(QMessageBox::Information); break;
        default: box.setIcon(QMessageBox::NoIcon); break;
    }
    struct Btn {
        QMessageBox::StandardButton button;
        int answer;
    };
    QList<Btn> buttons;
    switch (Mb::buttonsOf(style)) {
        case Mb::OKCancel:
            buttons = {{QMessageBox::Ok, Mb::OK}, {QMessageBox::Cancel, Mb::Cancel}};
            break;
        case Mb::AbortRetryIgnore:
            buttons = {{QMessageBox::Abort, Mb::Abort},
                       {QMessageBox::Retry, Mb::Retry},
                       {QMessageBox::Ignore, Mb::Ignore}};
            break;
        case Mb::YesNoCancel:
            buttons = {{QMessageBox::Yes, Mb::Yes},
                       {QMessageBox::No, Mb::No},
                       {QMessageBox::Cancel, Mb::Cancel}};
            break;
        case Mb::YesNo: buttons = {{QMessageBox::Yes, Mb::Yes}, {QMessageBox::No, Mb::No}}; break;
        case Mb::RetryCancel:
            buttons = {{QMessageBox::Retry, Mb::Retry}, {QMessageBox::Cancel, Mb::Cancel}};
            break;
        default: buttons = {{QMessageBox::Ok, Mb::OK}}; break;
    }
    QMessageBox::StandardButtons set;
    for (const auto& b : buttons) set |= b.button;
    box.setStandardButtons(set);
    int defaultIndex = (style & Mb::DefaultButton3) ? 2 : (style & Mb::DefaultButton2) ? 1 : 0;
    if (defaultIndex < buttons.size()) box.setDefaultButton(buttons[defaultIndex].button);
    if (style & Mb::SystemModal) box.setWindowModality(Qt::ApplicationModal);
    if (style & (Mb::SetForeground | Mb::SystemModal))
        box.setWindowFlag(Qt::WindowStaysOnTopHint, true);
    {
        EventsRunning running;
        box.exec();
    }
    auto clicked = box.standardButton(box.clickedButton());
    for (const auto& b : buttons)
        if (b.button == clicked) return b.answer;
    // Closed with Escape or the window manager: the cancel-like answer, else the default.
    for (const auto& b : buttons)
        if (b.answer == Mb::Cancel || b.answer == Mb::No) return b.answer;
    return buttons.front().answer;
}

}  // namespace cantovel
