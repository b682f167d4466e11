#pragma once
// The Vivo film control (VvWeb1): one film at a time, shown in a widget the window gives it,
// reporting its progress as state texts.
//
//  - setFilm() with a path loads the film (a bounded wait that lets events run) and leaves
//    it stopped; the empty text unloads it. A film that cannot be read leaves the control
//    idle.
//  - Play() starts or resumes. The first start of a loaded film reports
//    StateChange("play_download"), by when MovieWidth/MovieHeight and Duration hold;
//    each start then reports "play_out". The film playing to its end reports
//    "play_out_complete"; Stop() and unloading report "idle".
//  - Stop() keeps the film and its place: there is no pause of its own, a stop is one.
//  - While it plays, TimeEvent gives the position every second.
//  - A mouse press on the picture reports MouseDown (button 1 left, 2 right, 4 middle;
//    shift 1 shift, 2 ctrl, 4 alt; x, y in pixels).
//
// Every event is delivered on the UI thread.

#include <QObject>
#include <QString>

class QWidget;

namespace cantovel {

class FilmPlayer : public QObject {
    Q_OBJECT
  public:
    explicit FilmPlayer(QObject* parent = nullptr) : QObject(parent) {}
    ~FilmPlayer() override = default;

    static constexpr const char* Idle = "idle";
    static constexpr const char* PlayDownload = "play_download";
    static constexpr const char* PlayOut = "play_out";
    static constexpr const char* PlayOutComplete = "play_out_complete";

    virtual void setFilm(const QString& path) = 0;
    virtual QString film() const = 0;
    virtual void Play() = 0;
    virtual void Stop() = 0;
    // The state text last reported.
    virtual QString State() const = 0;

    // The film's natural size in pixels; 0 before it is known.
    virtual int MovieWidth() const = 0;
    virtual int MovieHeight() const = 0;
    // Milliseconds; 0 with no film.
    virtual qint64 Duration() const = 0;

    // The control's own boxes: the film's properties, and saving a copy of the film.
    virtual void About(QWidget* owner) = 0;
    virtual void Save(QWidget* owner) = 0;

    // The widget the picture is shown in, taken at the next film; the window places it.
    virtual void setVideoWidget(QWidget* widget) = 0;

  signals:
    void MouseDown(int button, int shift, int x, int y);
    void StateChange(const QString& state, const QString& text);
    void TimeEvent(qint64 milliseconds, const QString& text);
};

}  // namespace cantovel
