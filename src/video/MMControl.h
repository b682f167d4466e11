#pragma once
// The MCI control: a row of buttons over a multimedia device, driven by its properties and
// its Command text as the classic control was. Only the device type "VideoCD" is provided.
// A device that cannot be opened leaves every button inactive, and says nothing.

#include <QString>
#include <array>
#include <memory>

#include <QWidget>

#include "platform/videocd/VideoCdDevice.h"

class QToolButton;

namespace cantovel {

class MMControl : public QWidget {
    Q_OBJECT
  public:
    // The buttons, left to right.
    enum Button { Prev, Next, Play, Pause, Back, Step, Stop, Eject, ButtonCount };

    explicit MMControl(QWidget* parent = nullptr);
    ~MMControl() override;

    bool Wait = false;
    bool Notify = false;
    QString DeviceType;
    // Runs a command: "open", "close", "play", "pause", "stop", "prev", "next", "step",
    // "back", "eject" (in any case); others set an error.
    void setCommand(const QString& command);
    QString Command() const { return command_; }
    // The last command's error: 0, or an MCI error number with its text.
    int Error() const { return error_; }
    QString ErrorMessage() const { return errorMessage_; }
    // The device's mode; NotReady with none.
    int Mode() const;

    QToolButton* button(Button b) const { return buttons_[b]; }
    VideoCdDevice* device() const { return device_.get(); }

  private:
    void press(Button b);
    void refresh();
    void fail(int error, const QString& text);

    std::array<QToolButton*, ButtonCount> buttons_{};
    std::unique_ptr<VideoCdDevice> device_;
    QString command_;
    int error_ = 0;
    QString errorMessage_;
};

}  // namespace cantovel
