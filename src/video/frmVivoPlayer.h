#pragma once
// The Vivo film window: the film in the control VvWeb1, no menu bar, one right-button menu.
// The main window hides while it plays and comes back when it closes.

#include <QSize>
#include <memory>

#include "app/Form.h"
#include "platform/filmplayer/FilmPlayer.h"
#include "player/VivoPlayerWindow.h"

class QAction;
class QMenu;

namespace cantovel {

class frmVivoPlayer : public Form, public VivoPlayerWindow {
    Q_OBJECT
  public:
    frmVivoPlayer();
    ~frmVivoPlayer() override;

    static constexpr const char* Caption = "Right-Click for Options...";

    void VvWeb1Open(const QString& path) override;
    void VvWeb1Play() override;
    void VvWeb1Stop() override;

    // The control, and the widget its picture is shown in (its place and size).
    FilmPlayer* VvWeb1() { return film_.get(); }
    QWidget* VvWeb1View = nullptr;

    QMenu* MainMenu = nullptr;
    QAction* RestartMenu = nullptr;
    QAction* StopMenu = nullptr;
    QAction* PauseMenu = nullptr;
    QAction* FullScreenMenu = nullptr;
    QAction* OntopMenu = nullptr;
    QAction* AboutMovieMenu = nullptr;
    QAction* SaveMenu = nullptr;
    QAction* ExitMenu = nullptr;

    void VvWeb1_StateChange(const QString& state, const QString& text);
    void VvWeb1_TimeEvent(qint64 milliseconds, const QString& text);
    void VvWeb1_MouseDown(int button, int shift, int x, int y);

    // Sizes the window to a film of `width` x `height` pixels and places the control.
    void FitWindowToMovie(int width, int height);
    void AdjustFullScreen();
    // The film has ended: the main window goes back to idle with its display timers off.
    void EndOfFilm();
    // Where the film's time would go; this player shows none on the main window.
    void ShowTime(long seconds);

    void RestartMenu_Click();
    void StopMenu_Click();
    void PauseMenu_Click();
    void FullScreenMenu_Click();
    void OntopMenu_Click();
    void AboutMovieMenu_Click();
    void SaveMenu_Click();
    void ExitMenu_Click();

  protected:
    bool unloadEvent() override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void fitToFilm();
    // The control as the window's size and state want it.
    void placeControl();

    void buildMenu();
    // Stops and unloads the film.
    void dropFilm();

    std::unique_ptr<FilmPlayer> film_;
    // The film's size as last fitted to; none before the first.
    QSize filmSize_;
};

}  // namespace cantovel
