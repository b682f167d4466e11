#include <gtest/gtest.h>

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include "app/FileNames.h"
#include "shell/Subclass.h"

using namespace cantovel;

namespace {

struct Seen {
    quint32 msg;
    qintptr wParam, lParam;
};

// Records every WndProc; `handle` runs inside it.
struct Recorder {
    explicit Recorder(Subclass& s) {
        QObject::connect(&s, &Subclass::WndProc,
                         [this](quint32 msg, qintptr w, qintptr l, long* result) {
                             seen.append({msg, w, l});
                             if (handle) handle(msg, w, l, result);
                         });
    }
    QList<quint32> messages() const {
        QList<quint32> out;
        for (const Seen& s : seen) out << s.msg;
        return out;
    }
    QList<Seen> seen;
    std::function<void(quint32, qintptr, qintptr, long*)> handle;
};

std::unique_ptr<QWidget> frameless(QSize size = {300, 175}) {
    auto w = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
    w->resize(size);
    w->move(100, 100);
    w->show();
    QApplication::processEvents();
    return w;
}

}  // namespace

TEST(Subclass, HookingFollowsHWndAndReportsOnlyTheWatchedMessages) {
    auto w = frameless();
    Subclass s;
    Recorder r(s);
    EXPECT_EQ(s.CallWndProc(Wm::SIZE, 0, 0), 0);  // no window
    // A menu of the window raises INITMENUPOPUP with the menu; one elsewhere nothing.
    QMenu* menu = new QMenu(w.get());
    menu->addAction("&Close");
    QMenu elsewhere;
    elsewhere.addAction("x");
    s.setHWnd(w.get());
    s.setMessages(Wm::INITMENUPOPUP, true);
    menu->popup(QPoint(110, 110));
    elsewhere.popup(QPoint(110, 110));
    ASSERT_EQ(r.messages(), QList<quint32>({Wm::INITMENUPOPUP}));
    EXPECT_EQ(r.seen[0].wParam, reinterpret_cast<qintptr>(menu));
    menu->close();
    elsewhere.close();
    s.setMessages(Wm::INITMENUPOPUP, false);
    s.setHWnd(nullptr);
    r.seen.clear();

    s.setMessages(Wm::MOVE, true);
    s.setMessages(Wm::SIZE, true);
    s.setMessages(Wm::MOVE, true);
    EXPECT_EQ(s.watchedMessages(), QList<quint32>({Wm::MOVE, Wm::SIZE}));
    s.setHWnd(w.get());
    EXPECT_EQ(Subclass::hookOf(w.get()), &s);
    s.setHWnd(w.get());  // the same window: nothing changes
    w->move(120, 130);
    w->resize(300, 38);
    ASSERT_EQ(r.messages(), QList<quint32>({Wm::MOVE, Wm::SIZE}));
    EXPECT_EQ(Wm::loWord(r.seen[0].lParam), 120);
    EXPECT_EQ(Wm::hiWord(r.seen[0].lParam), 130);
    EXPECT_EQ(r.seen[1].wParam, 0);
    EXPECT_EQ(Wm::loWord(r.seen[1].lParam), 300);
    EXPECT_EQ(Wm::hiWord(r.seen[1].lParam), 38);
    s.setMessages(Wm::MOVE, false);
    EXPECT_FALSE(s.messages(Wm::MOVE));
    w->move(130, 130);
    EXPECT_EQ(r.seen.size(), 2);

    s.setMessages(Wm::MOVE, true);
    s.setHWnd(nullptr);
    EXPECT_EQ(Subclass::hookOf(w.get()), nullptr);
    w->move(140, 150);
    EXPECT_EQ(r.seen.size(), 2);

    // A window has one hook: a second Subclass takes it over.
    s.setHWnd(w.get());
    Subclass other;
    other.setHWnd(w.get());
    EXPECT_EQ(Subclass::hookOf(w.get()), &other);
    EXPECT_EQ(s.hWnd(), nullptr);
    // A window that goes takes its row with it.
    QWidget* raw = w.get();
    w.reset();
    EXPECT_EQ(Subclass::hookOf(raw), nullptr);
    EXPECT_EQ(other.hWnd(), nullptr);
}

TEST(Subclass, ADropReachesWndProcWithItsPathsInOrder) {
    QWidget list;
    Subclass s;
    Recorder r(s);
    QStringList during;
    r.handle = [&](quint32 msg, qintptr, qintptr, long*) {
        if (msg == Wm::DROPFILES) during = s.droppedFiles();
    };
    s.setHWnd(&list);
    EXPECT_FALSE(list.acceptDrops());
    s.setMessages(Wm::DROPFILES, true);
    EXPECT_TRUE(list.acceptDrops());

    // As a file manager sends it: percent-encoded bytes, one a Latin-1 "é".
    QMimeData data;
    data.setData("text/uri-list",
                 "file:///music/b.mp3\r\nhttp://example.org/x.mp3\r\nfile:///music/a%20song.wav\r\n"
                 "file:///music/caf%E9.mp3\r\nfile:///music/caf%C3%A9.mp3\r\n");
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&list, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&list, &drop);
    ASSERT_EQ(r.messages(), QList<quint32>({Wm::DROPFILES}));
    EXPECT_EQ(during, QStringList({"/music/b.mp3", "/music/a song.wav",
                                   NameFromBytes("/music/caf\xE9.mp3"), "/music/café.mp3"}));
    EXPECT_TRUE(s.droppedFiles().isEmpty());

    // A drop of no local file is no file drop.
    QMimeData text;
    text.setText("hello");
    QDropEvent other(QPointF(5, 5), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&list, &other);
    EXPECT_EQ(r.seen.size(), 1);

    s.setMessages(Wm::DROPFILES, false);
    EXPECT_FALSE(list.acceptDrops());
}
