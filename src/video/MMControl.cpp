#include "video/MMControl.h"

#include <QHBoxLayout>
#include <QStyle>
#include <QToolButton>

#include "platform/Components.h"

namespace cantovel {

namespace {

// MCI's numbers for the errors the control can meet.
constexpr int kUnrecognizedCommand = 261;
constexpr int kInvalidDeviceName = 263;
constexpr int kDeviceNotReady = 276;
constexpr int kDeviceNotOpen = 263 + 41;

}  // namespace

MMControl::MMControl(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("MMControl1"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
    const std::pair<QStyle::StandardPixmap, const char*> faces[ButtonCount] = {
        {QStyle::SP_MediaSkipBackward, "Prev"}, {QStyle::SP_MediaSkipForward, "Next"},
        {QStyle::SP_MediaPlay, "Play"},         {QStyle::SP_MediaPause, "Pause"},
        {QStyle::SP_MediaSeekBackward, "Back"}, {QStyle::SP_MediaSeekForward, "Step"},
        {QStyle::SP_MediaStop, "Stop"},         {QStyle::SP_TitleBarNormalButton, "Eject"},
    };
    for (int i = 0; i < ButtonCount; ++i) {
        auto* b = new QToolButton(this);
        b->setObjectName(QLatin1String(faces[i].second));
        b->setIcon(style()->standardIcon(faces[i].first));
        b->setToolTip(QLatin1String(faces[i].second));
        b->setAutoRaise(false);
        b->setFixedSize(28, 24);
        connect(b, &QToolButton::clicked, this, [this, i] { press(Button(i)); });
        row->addWidget(b);
        buttons_[i] = b;
    }
    row->addStretch(1);
    refresh();
}

MMControl::~MMControl() = default;

int MMControl::Mode() const {
    return device_ ? device_->Mode() : VideoCdDevice::NotReady;
}

void MMControl::fail(int error, const QString& text) {
    error_ = error;
    errorMessage_ = text;
}

void MMControl::setCommand(const QString& command) {
    command_ = command;
    error_ = 0;
    errorMessage_.clear();
    const QString c = command.toLower();
    if (c == QLatin1String("open")) {
        device_.reset();
        if (DeviceType.compare(QLatin1String("VideoCD"), Qt::CaseInsensitive) == 0)
            device_ = Components::create<VideoCdDevice>();
        if (!device_) {
            fail(kInvalidDeviceName, QStringLiteral("The specified device is not open or is not "
                                                    "recognized by MCI."));
        } else if (!device_->Open()) {
            fail(kDeviceNotReady, device_->ErrorMessage());
            device_.reset();
        } else {
            connect(device_.get(), &VideoCdDevice::ModeChanged, this, &MMControl::refresh);
        }
    } else if (c == QLatin1String("close")) {
        if (device_) device_->Close();
        device_.reset();
    } else {
        static const char* const names[ButtonCount] = {"prev", "next", "play", "pause",
                                                       "back", "step", "stop", "eject"};
        int which = -1;
        for (int i = 0; i < ButtonCount; ++i)
            if (c == QLatin1String(names[i])) which = i;
        if (which < 0)
            fail(kUnrecognizedCommand, QStringLiteral("Unrecognized command."));
        else if (!device_)
            fail(kDeviceNotOpen, QStringLiteral("The device is not open."));
        else
            press(Button(which));
    }
    refresh();
}

void MMControl::press(Button b) {
    if (!device_) return;
    switch (b) {
        case Prev:
            device_->Prev();
            break;
        case Next:
            device_->Next();
            break;
        case Play:
            device_->Play();
            break;
        case Pause:
            device_->Pause();
            break;
        case Back:
            device_->Back();
            break;
        case Step:
            device_->Step();
            break;
        case Stop:
            device_->Stop();
            break;
        case Eject:
            device_->Eject();
            break;
        default:
            break;
    }
    refresh();
}

void MMControl::refresh() {
    // With no device, or one not ready, the whole row is dead.
    const int mode = Mode();
    const bool open = device_ && device_->IsOpen();
    const bool playing = mode == VideoCdDevice::Playing;
    const bool paused = mode == VideoCdDevice::Paused;
    buttons_[Prev]->setEnabled(open);
    buttons_[Next]->setEnabled(open && device_->Entry() < device_->Entries());
    buttons_[Play]->setEnabled(open && !playing);
    buttons_[Pause]->setEnabled(open && playing);
    buttons_[Back]->setEnabled(open && (playing || paused));
    buttons_[Step]->setEnabled(open);
    buttons_[Stop]->setEnabled(open && (playing || paused));
    buttons_[Eject]->setEnabled(open && device_->CanEject());
}

}  // namespace cantovel
