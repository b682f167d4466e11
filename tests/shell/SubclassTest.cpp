// The window hook the forms use for moves, sizes, menus and drops.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QWidget>

#include "app/FileNames.h"
#include "shell/Subclass.h"

using namespace cantovel;

TEST(Subclass, AHookReportsTheWatchedMessagesOfItsWindowAndADropsLocalPaths) {
    auto w = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
    w->resize(300, 175);
    w->show();
    Subclass s;
    QList<quint32> seen;
    QList<qintptr> wParams, lParams;
    QStringList during;
    QObject::connect(&s, &Subclass::WndProc, [&](quint32 msg, qintptr wp, qintptr lp, long*) {
        seen << msg, wParams << wp, lParams << lp;
        if (msg == Wm::DROPFILES) during = s.droppedFiles();
    });
    EXPECT_EQ(s.CallWndProc(Wm::SIZE, 0, 0), 0);  // no window
    for (quint32 msg : {Wm::INITMENUPOPUP, Wm::MOVE, Wm::SIZE, Wm::MOVE, Wm::DROPFILES})
        s.setMessages(msg, true);
    EXPECT_EQ(s.watchedMessages(),
              QList<quint32>({Wm::INITMENUPOPUP, Wm::MOVE, Wm::SIZE, Wm::DROPFILES}));
    s.setHWnd(w.get());
    EXPECT_EQ(Subclass::hookOf(w.get()), &s);
    EXPECT_TRUE(w->acceptDrops());

    // A menu of the window raises INITMENUPOPUP with the menu; one elsewhere nothing.
    QMenu* menu = new QMenu(w.get());
    menu->addAction("&Close");
    QMenu elsewhere;
    elsewhere.addAction("x");
    menu->popup(QPoint(110, 110));
    elsewhere.popup(QPoint(110, 110));
    menu->close();
    elsewhere.close();
    w->move(120, 130);
    w->resize(300, 38);
    ASSERT_EQ(seen, QList<quint32>({Wm::INITMENUPOPUP, Wm::MOVE, Wm::SIZE}));
    EXPECT_EQ(wParams[0], reinterpret_cast<qintptr>(menu));
    EXPECT_EQ(QPoint(Wm::loWord(lParams[1]), Wm::hiWord(lParams[1])), QPoint(120, 130));
    EXPECT_EQ(QPoint(Wm::loWord(lParams[2]), Wm::hiWord(lParams[2])), QPoint(300, 38));

    // As a file manager sends a drop: percent-encoded bytes, one a Latin-1 "é"; only the
    // local files count, in their order.
    seen.clear();
    QMimeData data;
    data.setData("text/uri-list",
                 "file:///music/b.mp3\r\nhttp://example.org/x.mp3\r\nfile:///music/caf%E9.mp3\r\n"
                 "file:///music/caf%C3%A9.mp3\r\n");
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(w.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(w.get(), &drop);
    ASSERT_EQ(seen, QList<quint32>({Wm::DROPFILES}));
    EXPECT_EQ(during, QStringList({"/music/b.mp3", NameFromBytes("/music/caf\xE9.mp3"),
                                   "/music/café.mp3"}));

    s.setMessages(Wm::MOVE, false);
    EXPECT_FALSE(s.messages(Wm::MOVE));
    s.setMessages(Wm::DROPFILES, false);
    EXPECT_FALSE(w->acceptDrops());
    w->move(130, 130);
    s.setHWnd(w.get());  // the same window: nothing changes
    // A window has one hook: a second Subclass takes it over; a window that goes takes its
    // row with it.
    Subclass other;
    other.setHWnd(w.get());
    EXPECT_EQ(Subclass::hookOf(w.get()), &other);
    EXPECT_EQ(s.hWnd(), nullptr);
    w->resize(200, 38);
    EXPECT_EQ(seen.size(), 1);
    QWidget* raw = w.get();
    w.reset();
    EXPECT_EQ(Subclass::hookOf(raw), nullptr);
    EXPECT_EQ(other.hWnd(), nullptr);
}
