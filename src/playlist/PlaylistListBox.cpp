#include "playlist/PlaylistListBox.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

namespace cantovel {

namespace {

int vbButtons(Qt::MouseButtons b) {
    return (b & Qt::LeftButton ? 1 : 0) | (b & Qt::RightButton ? 2 : 0) |
           (b & Qt::MiddleButton ? 4 : 0);
}

int vbShift(Qt::KeyboardModifiers m) {
    return (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) |
           (m & Qt::AltModifier ? 4 : 0);
}

// Every row is as wide as the list's horizontal extent, so the list scrolls across it.
class ExtentDelegate : public QStyledItemDelegate {
  public:
    explicit ExtentDelegate(PlaylistListBox* list) : QStyledItemDelegate(list), list_(list) {}
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QSize s = QStyledItemDelegate::sizeHint(option, index);
        s.setWidth(std::max(list_->horizontalExtent(), list_->viewport()->width()));
        return s;
    }
    void changed() { emit sizeHintChanged(QModelIndex()); }

  private:
    PlaylistListBox* list_;
};

}  // namespace

PlaylistListBox::PlaylistListBox(QWidget* parent) : QListView(parent) {
    setModel(&model_);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setUniformItemSizes(true);
    setLayoutMode(QListView::Batched);
    setBatchSize(2000);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setItemDelegate(new ExtentDelegate(this));
    setMouseTracking(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { emit Click(); });
}

QString PlaylistListBox::List(int index) const {
    return index >= 0 && index < ListCount() ? model_.texts()[index] : QString();
}

int PlaylistListBox::ListIndex() const {
    const QModelIndex i = currentIndex();
    return i.isValid() ? i.row() : -1;
}

void PlaylistListBox::setListIndex(int index) {
    if (index < 0 || index >= ListCount()) {
        selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
        return;
    }
    selectionModel()->setCurrentIndex(model_.index(index), QItemSelectionModel::Select);
    scrollTo(model_.index(index));
}

bool PlaylistListBox::Selected(int index) const {
    return index >= 0 && index < ListCount() && selectionModel()->isRowSelected(index, {});
}

void PlaylistListBox::setSelected(int index, bool selected) {
    if (index < 0 || index >= ListCount()) return;
    selectionModel()->select(model_.index(index), selected ? QItemSelectionModel::Select
                                                           : QItemSelectionModel::Deselect);
}

QVector<int> PlaylistListBox::selectedRowList() const {
    QVector<int> rows;
    for (const QItemSelectionRange& r : selectionModel()->selection())
        for (int i = r.top(); i <= r.bottom(); ++i) rows << i;
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

int PlaylistListBox::SelCount() const {
    return int(selectedRowList().size());
}

void PlaylistListBox::clearSelection() {
    selectionModel()->clearSelection();
}

bool PlaylistListBox::RemoveItem(int index) {
    if (index < 0 || index >= ListCount()) return false;
    model_.removeRange(index, 1);
    return true;
}

int PlaylistListBox::ItemFromPoint(const QPoint& pt) const {
    const QModelIndex i = indexAt(pt);
    return i.isValid() ? i.row() : -1;
}

void PlaylistListBox::setHorizontalExtent(int pixels) {
    if (pixels == extent_) return;
    extent_ = pixels;
    static_cast<ExtentDelegate*>(itemDelegate())->changed();
}

void PlaylistListBox::mouseMoveEvent(QMouseEvent* e) {
    QListView::mouseMoveEvent(e);
    const QPoint p = e->position().toPoint();
    emit MouseMove(vbButtons(e->buttons()), vbShift(e->modifiers()), p.x(), p.y());
}

void PlaylistListBox::mouseReleaseEvent(QMouseEvent* e) {
    QListView::mouseReleaseEvent(e);
    const QPoint p = e->position().toPoint();
    emit MouseUp(vbButtons(e->button()), vbShift(e->modifiers()), p.x(), p.y());
}

void PlaylistListBox::mouseDoubleClickEvent(QMouseEvent* e) {
    QListView::mouseDoubleClickEvent(e);
    if (e->button() == Qt::LeftButton && indexAt(e->position().toPoint()).isValid())
        emit DblClick();
}

}  // namespace cantovel
