#include "video/VideoPlayerMru.h"

#include <QAction>
#include <QStringList>

#include "app/Settings.h"

namespace cantovel {

VideoPlayerMru::VideoPlayerMru(RegRoot root, const QString& registryPath, const QString& subKey)
    : root_(root), registryPath_(registryPath), subKey_(subKey) {}

QString VideoPlayerMru::key() const {
    return subKey_.isEmpty() ? registryPath_ : registryPath_ + u'\\' + subKey_;
}

void VideoPlayerMru::setMenuItem(int index, QAction* row) {
    if (index < 0 || index > MaxMRUItems) return;
    rows_[index] = row;
}

QString VideoPlayerMru::read(const QString& name) const {
    QString value = ReadRegValue(root_, key(), name, QString());
    // A stored NUL ends the text.
    const qsizetype nul = value.indexOf(QChar(0));
    if (nul >= 0) value.truncate(nul);
    return value;
}

void VideoPlayerMru::write(const QString& name, const QString& value) const {
    WriteRegValue(root_, key(), name, value);
}

void VideoPlayerMru::GetMRUList() {
    QStringList captions, tags;
    for (int n = 1; n <= MaxMRUItems; ++n) {
        const QString entry = read(prefix_ + QString::number(n));
        if (entry.isEmpty()) continue;
        captions << QStringLiteral("&%1. ").arg(captions.size() + 1) + entry;
        tags << read(tagPrefix_ + QString::number(n));
    }
    for (QAction* row : rows_)
        if (row) row->setVisible(false);
    if (captions.isEmpty()) return;
    if (rows_[0]) rows_[0]->setVisible(true);
    for (int i = 1; i <= captions.size() && i <= MaxMRUItems; ++i) {
        QAction* row = rows_[i];
        if (!row) continue;
        row->setText(captions[i - 1]);
        row->setData(tags[i - 1]);
        row->setVisible(true);
    }
}

void VideoPlayerMru::SetMRUList(const QString& item, const QString& tag) {
    if (item.isEmpty()) {
        for (int n = 1; n <= MaxMRUItems; ++n) {
            write(prefix_ + QString::number(n), QString());
            write(tagPrefix_ + QString::number(n), QString());
        }
        GetMRUList();
        return;
    }
    QStringList entries{item}, tags{tag};
    for (int n = 1; n <= MaxMRUItems; ++n) {
        const QString entry = read(prefix_ + QString::number(n));
        if (entry.isEmpty() || entry.toUpper() == item.toUpper()) continue;
        entries << entry;
        tags << read(tagPrefix_ + QString::number(n));
    }
    for (int i = 1; i <= entries.size() && i <= MaxMRUItems; ++i) {
        write(prefix_ + QString::number(i), entries[i - 1]);
        write(tagPrefix_ + QString::number(i), tags[i - 1]);
    }
    GetMRUList();
}

}  // namespace cantovel
