#pragma once
// An icon in the notification area with the classic surface: a picture, a tip, whether
// it is up, and the mouse events of the tray's messages.

#include <QIcon>
#include <QObject>
#include <QString>
#include <memory>
#include <optional>

class QSystemTrayIcon;

namespace cantovel {

class cSysTray : public QObject {
    Q_OBJECT
  public:
    explicit cSysTray(QObject* parent = nullptr);
    ~cSysTray() override;

    // The tray's mouse messages and the value they arrive with.
    static constexpr int TrayMessage = 1125;
    enum : int {
        WM_MOUSEMOVE = 512,
        WM_LBUTTONDOWN = 513,
        WM_LBUTTONUP = 514,
        WM_LBUTTONDBLCLK = 515,
        WM_RBUTTONDOWN = 516,
        WM_RBUTTONUP = 517,
        WM_RBUTTONDBLCLK = 518,
    };
    // The tip field holds 64 characters with its closing NUL.
    static constexpr int TipLength = 63;

    QIcon TrayIcon() const { return icon_; }
    void setTrayIcon(const QIcon& icon);
    QString TrayTip() const { return tip_; }
    void setTrayTip(const QString& text);
    bool InTray() const { return installed_; }
    void setInTray(bool inTray);

    // Whether the desktop has a notification area to show the icon in; tests may decide.
    static bool Available();
    static void setAvailableOverride(std::optional<bool> available);

    // What the notification area shows as the tip: the text cut by the field.
    QString shownTip() const;
    // A message that reached the control's hook: `message` is 1125, `lParam` the mouse
    // message, which becomes one of the events.
    void hookMessage(int message, int lParam);

  signals:
    void MouseMove();
    void MouseDown(int Button);
    void MouseUp(int Button);
    void MouseDblClick(int Button);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void onActivated(int reason);
    // The icon's own window, where the desktop embeds one (an XEmbed tray): its mouse
    // events are the tray's messages as they come, press and release apart.
    void watchIconWindow();

    QIcon icon_;
    QString tip_;
    bool installed_ = false;
    std::unique_ptr<QSystemTrayIcon> tray_;
    QObject* iconWindow_ = nullptr;
};

}  // namespace cantovel
