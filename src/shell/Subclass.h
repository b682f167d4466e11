#pragma once
// Lets a form see chosen window messages of one of its windows. Qt's events are turned
// into the classic message numbers the forms are written against; a form switches on the
// messages it wants and handles them in WndProc.

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QStringList>

class QEvent;
class QMenu;
class QWidget;

namespace cantovel {

namespace Wm {
constexpr quint32 MOVE = 3;                  // lParam: new x (low word), y (high word)
constexpr quint32 SIZE = 5;                  // wParam: 0 normal, 1 minimised, 2 maximised;
                                             // lParam: width (low word), height (high word)
constexpr quint32 WINDOWPOSCHANGING = 0x46;  // lParam: address of a WindowPos
constexpr quint32 NCRBUTTONDOWN = 0xA4;      // wParam: hit-test code; lParam: screen x, y
constexpr quint32 NCRBUTTONUP = 0xA5;
constexpr quint32 INITMENUPOPUP = 0x117;  // wParam: the QMenu about to show
constexpr quint32 DROPFILES = 0x233;      // the paths: Subclass::droppedFiles()

constexpr qintptr HTCAPTION = 2;
// A frameless window has no caption of its own: its top rows act as one.
constexpr int CaptionHeight = 14;

constexpr qintptr makeLong(int low, int high) {
    return qintptr(quint32(quint16(low)) | (quint32(quint16(high)) << 16));
}
constexpr int loWord(qintptr v) {
    return qint16(quint16(v & 0xFFFF));
}
constexpr int hiWord(qintptr v) {
    return qint16(quint16((v >> 16) & 0xFFFF));
}
}  // namespace Wm

// The proposed place of a top-level window, handed to WM_WINDOWPOSCHANGING by address in
// lParam. Frame coordinates in pixels. A handler may change x, y, cx and cy; the window
// then takes the changed place.
struct WindowPos {
    QWidget* hwnd = nullptr;
    int x = 0, y = 0, cx = 0, cy = 0;
    quint32 flags = 0;  // NoSize: the size is unchanged; NoMove: the place is unchanged
    static constexpr quint32 NoSize = 1, NoMove = 2;
};

class Subclass : public QObject {
    Q_OBJECT
  public:
    explicit Subclass(QObject* parent = nullptr);
    ~Subclass() override;

    // The hooked window. Setting another one unhooks the old one first; null only unhooks;
    // an equal value does nothing. A window has one hook at a time: hooking it here takes
    // it from the Subclass that had it.
    QWidget* hWnd() const { return window_; }
    void setHWnd(QWidget* window);

    bool messages(quint32 msg) const { return watched_.contains(msg); }
    void setMessages(quint32 msg, bool watch);
    QList<quint32> watchedMessages() const { return watched_; }

    // The window's default handling of the message being handled: for a drop or a caption
    // click, the event then also reaches the window itself. Gives 0; 0 with no window.
    long CallWndProc(quint32 msg, qintptr wParam, qintptr lParam);

    // The paths of the drop being handled in WM_DROPFILES, in order; empty otherwise.
    QStringList droppedFiles() const { return dropped_; }

    // The Subclass hooked to `window`, if any.
    static Subclass* hookOf(const QWidget* window);

  signals:
    // A watched message arrived. `result` starts at 0.
    void WndProc(quint32 msg, qintptr wParam, qintptr lParam, long* result);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Dispatch {
        quint32 msg;
        bool passOn;
    };
    void hook(QWidget* window);
    void unhook();
    void windowGone();
    void updateDrops();
    // Raises WndProc; true when the handler asked for the default handling. `alive` turns
    // false when the handler deleted this object.
    bool dispatch(quint32 msg, qintptr wParam, qintptr lParam, bool* alive);

    bool geometryChanged(QEvent* event);
    bool positionChanging(quint32 flags);
    bool captionClick(QObject* watched, QEvent* event);
    bool dropEvent(QEvent* event);

    QPointer<QWidget> window_;
    QWidget* hooked_ = nullptr;  // the same, still known while the window is being destroyed
    QList<quint32> watched_;
    QList<Dispatch> dispatching_;
    QStringList dropped_;
    QRect lastProposed_;
    int applying_ = 0;
    bool setAcceptDrops_ = false;
};

}  // namespace cantovel
