#pragma once
// Small services around windows: centring, staying on top, coming to the front.

#include <QPoint>
#include <QRect>
#include <QSize>

class QWidget;

namespace cantovel {

// Where a window of `form` size sits centred on `screen`.
QPoint centeredPosition(const QRect& screen, const QSize& form);
// Centres a window on its screen.
void CenterForm(QWidget* form);
// Keeps a window above the others, or lets it go; a shown window stays shown.
void FormOnTop(QWidget* form, bool onTop);
// Brings a window to the front and gives it the focus: nothing for no window or the active
// one; a minimised window is restored first when `restore` asks.
void ForceFrontWindow(QWidget* window, bool restore);
// Lets the next show of a hidden window map it as a normal window. A window minimised once
// keeps X's "start as an icon" hint after the window manager restored it, since Qt never
// heard of the restore as a change of its own; shown again after a hide, it would come back
// as an icon.
void MapNormally(QWidget* window);
// Shows a window's empty caption as empty on the desktop too. Qt gives a window without a
// title the application's name; the window's own caption is what the user asked for.
// Called again whenever Qt writes the title (a new title, a new native window).
void ShowEmptyCaption(QWidget* window);

}  // namespace cantovel
