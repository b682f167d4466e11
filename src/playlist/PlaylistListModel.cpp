#include "playlist/PlaylistListModel.h"

namespace cantovel {

int PlaylistListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(texts_.size());
}

QVariant PlaylistListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= texts_.size()) return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return texts_[index.row()];
    return {};
}

void PlaylistListModel::append(const QStringList& texts) {
    if (texts.isEmpty()) return;
    const int first = int(texts_.size());
    beginInsertRows({}, first, first + int(texts.size()) - 1);
    texts_ += texts;
    endInsertRows();
}

void PlaylistListModel::insert(int row, const QString& text) {
    row = std::clamp(row, 0, int(texts_.size()));
    beginInsertRows({}, row, row);
    texts_.insert(row, text);
    endInsertRows();
}

void PlaylistListModel::removeRange(int first, int count) {
    if (first < 0 || count <= 0 || first + count > texts_.size()) return;
    beginRemoveRows({}, first, first + count - 1);
    texts_.remove(first, count);
    endRemoveRows();
}

void PlaylistListModel::keepRows(const QList<bool>& keep) {
    beginResetModel();
    QStringList kept;
    kept.reserve(texts_.size());
    for (qsizetype i = 0; i < texts_.size(); ++i)
        if (i >= keep.size() || keep[i]) kept << texts_[i];
    texts_ = std::move(kept);
    endResetModel();
}

void PlaylistListModel::clear() {
    if (texts_.isEmpty()) return;
    beginResetModel();
    texts_.clear();
    endResetModel();
}

}  // namespace cantovel
