#pragma once
// The rows of the playlist window's list: one text a row, nothing else. Rows come and go
// in blocks, so that a list of a hundred thousand rows fills and empties at once.

#include <QAbstractListModel>
#include <QStringList>

namespace cantovel {

class PlaylistListModel : public QAbstractListModel {
    Q_OBJECT
  public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    const QStringList& texts() const { return texts_; }
    void append(const QStringList& texts);
    // Inserts before `row`; a row beyond the end appends.
    void insert(int row, const QString& text);
    void removeRange(int first, int count);
    // Keeps the rows whose flag is set and drops the rest, in one pass however scattered
    // they are; the view is told once.
    void keepRows(const QList<bool>& keep);
    void clear();

  private:
    QStringList texts_;
};

}  // namespace cantovel
