#pragma once
// Message boxes with the classic style flags, so the windows can say exactly which
// icon, buttons and modality a box has, and tests can read every box back.

#include <QString>

class QWidget;

namespace cantovel {

namespace Mb {
// Buttons.
constexpr int OKOnly = 0, OKCancel = 1, AbortRetryIgnore = 2, YesNoCancel = 3, YesNo = 4,
              RetryCancel = 5;
// Icons.
constexpr int Critical = 16, Question = 32, Exclamation = 48, Information = 64;
// Default button.
constexpr int DefaultButton1 = 0, DefaultButton2 = 256, DefaultButton3 = 512;
// Modality and placement.
constexpr int ApplicationModal = 0, SystemModal = 4096, SetForeground = 0x10000;
// Answers.
constexpr int OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7;

constexpr int buttonsOf(int style) { return style & 7; }
constexpr int iconOf(int style) { return style & 0x70; }
}  // namespace Mb

class MsgBox {
public:
    virtual ~MsgBox() = default;
    // Shows a box and returns the answer (Mb::OK, Mb::Yes, ...). An empty title is the
    // application's title.
    virtual int show(const QString& text, int style = Mb::OKOnly, const QString& title = {},
                     QWidget* owner = nullptr) = 0;

    // The registered service.
    static MsgBox& get();
};

// Shorthand for the registered service.
int MsgBoxShow(const QString& text, int style = Mb::OKOnly, const QString& title = {},
               QWidget* owner = nullptr);

}  // namespace cantovel
