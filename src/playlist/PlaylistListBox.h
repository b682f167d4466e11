#pragma once
// The playlist window's visible list, lstPlayList: a multi-select list of names on a
// model, so that a hundred thousand rows scroll, select and change without a stall. It
// offers the list-box vocabulary the window's commands are written in (ListCount, List,
// Selected, ListIndex, AddItem, RemoveItem) and tells its mouse in the classic terms.

#include <QListView>
#include <QVector>

#include "playlist/PlaylistListModel.h"

namespace cantovel {

class PlaylistListBox : public QListView {
    Q_OBJECT
  public:
    explicit PlaylistListBox(QWidget* parent = nullptr);

    int ListCount() const { return model_.rowCount(); }
    // The text of a row; the empty text for a row that isn't there.
    QString List(int index) const;
    const QStringList& texts() const { return model_.texts(); }
    // The row with the focus, -1 for none.
    int ListIndex() const;
    // Makes `index` the focused and selected row (other selections stay); -1 clears it.
    void setListIndex(int index);
    bool Selected(int index) const;
    void setSelected(int index, bool selected);
    // The selected rows, from the first to the last.
    QVector<int> selectedRowList() const;
    int SelCount() const;
    void clearSelection();

    void AddItem(const QString& text) { model_.insert(ListCount(), text); }
    void AddItems(const QStringList& texts) { model_.append(texts); }
    void InsertItem(int index, const QString& text) { model_.insert(index, text); }
    // False for a row that isn't there.
    bool RemoveItem(int index);
    void RemoveRange(int first, int count) { model_.removeRange(first, count); }
    void KeepRows(const QList<bool>& keep) { model_.keepRows(keep); }
    void Clear() { model_.clear(); }

    // The row under a point of the viewport, -1 for none.
    int ItemFromPoint(const QPoint& pt) const;
    // The width in pixels the list scrolls across; rows wider than the list need it.
    void setHorizontalExtent(int pixels);
    int horizontalExtent() const { return extent_; }

  signals:
    // Classic mouse terms: Button 1 left, 2 right, 4 middle; Shift 1 shift, 2 ctrl, 4 alt.
    void Click();
    void DblClick();
    void MouseMove(int Button, int Shift, int X, int Y);
    void MouseUp(int Button, int Shift, int X, int Y);

  protected:
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;

  private:
    PlaylistListModel model_;
    int extent_ = 0;
};

}  // namespace cantovel
