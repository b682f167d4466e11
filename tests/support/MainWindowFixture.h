#pragma once
// A loaded main window on the fakes: message boxes, virtual time, a registry of its own, a
// mixer at 70, the desktop shell and the file dialogs. Helpers read the painted face back,
// and give mouse events to any window.

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <memory>

#include "app/Forms.h"
#include "platform/Components.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "support/AppTest.h"
#include "support/FakeFileDialogs.h"
#include "support/FakeMixer.h"
#include "support/FakeShell.h"

namespace cantovel::test {

// Mouse events as the window system delivers them; pos in the window's pixels.
inline void mouse(QWidget& w, QEvent::Type type, const QPoint& pos, Qt::MouseButton button,
                  Qt::MouseButtons held, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    QMouseEvent e(type, QPointF(pos), QPointF(w.mapToGlobal(pos)), button, held, mods);
    QApplication::sendEvent(&w, &e);
}
inline void press(QWidget& w, const QPoint& pos, Qt::MouseButton b = Qt::LeftButton) {
    mouse(w, QEvent::MouseButtonPress, pos, b, b);
}
inline void release(QWidget& w, const QPoint& pos, Qt::MouseButton b = Qt::LeftButton) {
    mouse(w, QEvent::MouseButtonRelease, pos, b, Qt::NoButton);
}
inline void hover(QWidget& w, const QPoint& pos) {
    mouse(w, QEvent::MouseMove, pos, Qt::NoButton, Qt::NoButton);
}
inline void drag(QWidget& w, const QPoint& pos) {
    mouse(w, QEvent::MouseMove, pos, Qt::NoButton, Qt::LeftButton);
}
inline void click(QWidget& w, const QPoint& pos) {
    press(w, pos);
    release(w, pos);
}

class MainWindowFixture : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        mixer = std::make_shared<FakeMixer>();
        shell = std::make_shared<FakeShell>();
        dialogs = std::make_shared<FakeFileDialogs>();
        Components::provideService<Mixer>(mixer);
        Components::provideService<Shell>(shell);
        Components::provideService<FileDialogs>(dialogs);
    }

    // Loads the main window as the program does.
    frmMain& load() {
        auto* m = new frmMain();
        m->Form_Load(QString());
        QApplication::processEvents();
        return *m;
    }
    frmTemp& temp() { return Forms::touch<frmTemp>(); }

    // What the window shows now.
    static QImage face(frmMain& m) {
        return m.grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    static QImage part(const QImage& img, const QRect& r) { return img.copy(r); }
    static QImage picture(const QPixmap& p) {
        return p.toImage().convertToFormat(QImage::Format_RGB32);
    }
    // The window's own picture at a place: what shows where no control paints.
    static QImage background(frmMain& m, const QRect& r) { return picture(m.Picture).copy(r); }

    std::shared_ptr<FakeMixer> mixer;
    std::shared_ptr<FakeShell> shell;
    std::shared_ptr<FakeFileDialogs> dialogs;
};

}  // namespace cantovel::test
