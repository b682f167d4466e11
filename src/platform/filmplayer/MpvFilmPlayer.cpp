#include "platform/filmplayer/MpvFilmPlayer.h"

#include <QFile>
#include <QFileInfo>
#include <QMouseEvent>
#include <QSaveFile>

#include "app/Utilities.h"
#include "platform/dialogs/FileDialogs.h"
#include "platform/msgbox/MsgBox.h"

namespace cantovel {

MpvFilmPlayer::MpvFilmPlayer(QObject* parent) : FilmPlayer(parent) {
    // The window places and sizes the picture itself.
    player_.setDisplaySize(MediaPlayer::mpFitToSize);
    connect(&player_, &MediaPlayer::PlayStateChange, this, &MpvFilmPlayer::playStateChanged);
    connect(&ticker_, &Timer::timeout, this,
            [this] { emit TimeEvent(qint64(player_.CurrentPosition() * 1000), QString()); });
}

MpvFilmPlayer::~MpvFilmPlayer() = default;

void MpvFilmPlayer::report(const char* state) {
    state_ = QString::fromLatin1(state);
    emit StateChange(state_, QString());
}

void MpvFilmPlayer::setFilm(const QString& path) {
    const bool hadFilm = !player_.fileName().isEmpty();
    ticker_.setEnabled(false);
    started_ = false;
    stopping_ = true;
    player_.setFileName(path);
    stopping_ = false;
    if ((hadFilm || !path.isEmpty()) && state_ != QLatin1String(Idle)) report(Idle);
}

void MpvFilmPlayer::Play() {
    if (player_.OpenState() != MediaPlayer::mpoOpen) return;
    if (player_.PlayState() == MediaPlayer::mpPlaying) return;
    player_.Play();
    if (player_.PlayState() != MediaPlayer::mpPlaying) return;
    ticker_.setEnabled(true);
    if (!started_) {
        started_ = true;
        report(PlayDownload);
    }
    report(PlayOut);
}

void MpvFilmPlayer::Stop() {
    ticker_.setEnabled(false);
    if (player_.PlayState() != MediaPlayer::mpPlaying) return;
    // A stop keeps the place, so the next play goes on from there.
    stopping_ = true;
    player_.Pause();
    stopping_ = false;
    report(Idle);
}

void MpvFilmPlayer::playStateChanged(int oldState, int newState) {
    if (stopping_ || oldState != MediaPlayer::mpPlaying || newState != MediaPlayer::mpStopped)
        return;
    ticker_.setEnabled(false);
    report(PlayOutComplete);
}

int MpvFilmPlayer::demuxSize(const char* name, int fallback) const {
    // The container knows the size before the first picture is decoded.
    bool ok = false;
    const int value = player_.mpvProperty(name).toInt(&ok);
    return ok && value > 0 ? value : fallback;
}

int MpvFilmPlayer::MovieWidth() const {
    return player_.ImageSourceWidth() > 0 ? player_.ImageSourceWidth()
                                          : demuxSize("current-tracks/video/demux-w", 0);
}

int MpvFilmPlayer::MovieHeight() const {
    return player_.ImageSourceHeight() > 0 ? player_.ImageSourceHeight()
                                           : demuxSize("current-tracks/video/demux-h", 0);
}

qint64 MpvFilmPlayer::Duration() const {
    return qint64(player_.Duration() * 1000);
}

QString MpvFilmPlayer::Properties() const {
    const QString path = player_.fileName();
    if (path.isEmpty()) return QStringLiteral("No movie is loaded.");
    const auto orNone = [](const QString& s) { return s.isEmpty() ? QStringLiteral("none") : s; };
    QStringList lines;
    lines << QStringLiteral("Movie: ") + QFileInfo(path).fileName();
    lines << QStringLiteral("Location: ") + QFileInfo(path).absolutePath();
    lines << QStringLiteral("Size: %1 x %2 pixels").arg(MovieWidth()).arg(MovieHeight());
    lines << QStringLiteral("Length: ") + ConvertSeconds(player_.Duration(), true, false);
    lines << QStringLiteral("Format: ") + orNone(player_.mpvProperty("file-format"));
    lines << QStringLiteral("Video: ") + orNone(player_.mpvProperty("video-codec"));
    lines << QStringLiteral("Audio: ") + orNone(player_.mpvProperty("audio-codec"));
    lines << QStringLiteral("File size: %1 bytes").arg(QFileInfo(path).size());
    return lines.join(QStringLiteral("\r\n"));
}

void MpvFilmPlayer::About(QWidget* owner) {
    MsgBoxShow(Properties(), Mb::Information, QStringLiteral("About Movie"), owner);
}

void MpvFilmPlayer::Save(QWidget* owner) {
    const QString source = player_.fileName();
    if (source.isEmpty()) return;
    FileDialogRequest request;
    request.title = QStringLiteral("Save Movie As");
    request.filter = QStringLiteral("Vivo Movies|*.viv;*.vivo|All Files|*.*");
    request.initDir = QFileInfo(source).absolutePath();
    request.fileName = QFileInfo(source).fileName();
    request.defaultExt = QFileInfo(source).suffix();
    const FileDialogResult chosen = FileDialogs::get().save(owner, request);
    const QString target = chosen.cancelled ? QString() : chosen.file();
    if (target.isEmpty()) return;
    // The film onto itself: nothing to do, and nothing to lose.
    if (QFileInfo(target).canonicalFilePath() == QFileInfo(source).canonicalFilePath()) return;

    // Written aside and put in place at the end, so a failed copy leaves any old file.
    QFile in(source);
    QSaveFile out(target);
    bool ok = in.open(QIODevice::ReadOnly) && out.open(QIODevice::WriteOnly);
    while (ok && !in.atEnd()) {
        const QByteArray chunk = in.read(1 << 20);
        ok = !chunk.isEmpty() && out.write(chunk) == chunk.size();
    }
    if (ok) ok = out.commit();
    if (!ok) {
        out.cancelWriting();
        MsgBoxShow(QStringLiteral("The movie could not be saved as \"") + target + u'"' +
                       QStringLiteral(".  ") + out.errorString(),
                   Mb::Exclamation, QString(), owner);
    }
}

void MpvFilmPlayer::setVideoWidget(QWidget* widget) {
    if (widget_) widget_->removeEventFilter(this);
    widget_ = widget;
    if (widget_) widget_->installEventFilter(this);
    player_.setVideoWidget(widget);
}

bool MpvFilmPlayer::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget_ && event->type() == QEvent::MouseButtonPress) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        const int button = mouse->button() == Qt::LeftButton     ? 1
                           : mouse->button() == Qt::RightButton  ? 2
                           : mouse->button() == Qt::MiddleButton ? 4
                                                                 : 0;
        const Qt::KeyboardModifiers mods = mouse->modifiers();
        const int shift = (mods & Qt::ShiftModifier ? 1 : 0) |
                          (mods & Qt::ControlModifier ? 2 : 0) | (mods & Qt::AltModifier ? 4 : 0);
        const QPoint at = mouse->position().toPoint();
        emit MouseDown(button, shift, at.x(), at.y());
    }
    return FilmPlayer::eventFilter(watched, event);
}

}  // namespace cantovel
