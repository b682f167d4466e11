#include "cd/CDTrackListView.h"

#include <QApplication>
#include <QHeaderView>
#include <QStyle>

#include "app/Runtime.h"
#include "platform/msgbox/MsgBox.h"

namespace cantovel {

namespace {

constexpr int PictureRole = Qt::UserRole + 1;

QString yesNo(bool value) {
    return value ? QStringLiteral("Yes") : QStringLiteral("No");
}

}  // namespace

CDTrackListView::CDTrackListView(QWidget* parent) : QTreeWidget(parent) {
    setHeaderLabels({QStringLiteral("Track"), QStringLiteral("Start Time"),
                     QStringLiteral("Play Time"), QStringLiteral("File Size"),
                     QStringLiteral("Copy Protected"), QStringLiteral("Pre-Emphasis")});
    setRootIsDecorated(false);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setAllColumnsShowFocus(true);
    header()->setStretchLastSection(false);
    setMinimumHeight(150);
}

QString CDTrackListView::PositionText(quint32 packed, bool withFrames) {
    const qint64 frames = CDReader::ToFrames(packed);
    const qint64 seconds = frames / 75, rest = frames % 75;
    QString text = QString::number(seconds / 3600) + QLatin1Char(':') +
                   Format(double(seconds / 60 % 60), QStringLiteral("00")) + QLatin1Char(':') +
                   Format(double(seconds % 60), QStringLiteral("00"));
    if (withFrames) text += QLatin1Char('.') + Format(double(rest), QStringLiteral("00"));
    return text;
}

QString CDTrackListView::DriveText(const CDDevice& device) {
    return QStringLiteral("<") + device.DriveLetter + QStringLiteral(":>  ") + device.DeviceName;
}

bool CDTrackListView::Fill(const CDReader& reader, long& trackCountShown) {
    clear();
    if (!reader.DiscPresent()) return false;
    if (!reader.DirectoryRead()) {
        // Counted as listed, so the window's tick does not ask again every half second
        // until the disc changes.
        trackCountShown = reader.TrackCount();
        MsgBoxShow(QStringLiteral("Unable to read CD directory"));
        return false;
    }
    trackCountShown = reader.TrackCount();
    const QIcon audio = style()->standardIcon(QStyle::SP_MediaVolume);
    const QIcon data = style()->standardIcon(QStyle::SP_DriveCDIcon);
    for (const CDTrack& track : reader.Tracks()) {
        auto* line = new QTreeWidgetItem(this);
        line->setText(0, Format(track.Number, QStringLiteral("00")));
        line->setData(0, PictureRole, track.IsAudio ? AudioPicture : DataPicture);
        line->setIcon(0, track.IsAudio ? audio : data);
        line->setText(1, PositionText(track.StartPosition, true));
        line->setText(2, PositionText(track.Length, true));
        const double bytes = double(CDReader::ToFrames(track.Length)) * 2352;
        line->setText(3, Format(bytes / 1024 / 1024, QStringLiteral("0.00 MB")));
        line->setText(4, yesNo(track.CopyProtected));
        line->setText(5, yesNo(track.PreEmphasis));
    }
    for (int c = 0; c < columnCount(); ++c) resizeColumnToContents(c);
    // As a list control does, the first line has the focus and is selected.
    if (topLevelItemCount() > 0) setCurrentItem(topLevelItem(0));
    return true;
}

int CDTrackListView::Picture(int line) const {
    const QTreeWidgetItem* item = topLevelItem(line);
    return item ? item->data(0, PictureRole).toInt() : 0;
}

bool CDTrackListView::anySelected() const {
    return !selectedItems().isEmpty();
}

int CDTrackListView::selectedIndex() const {
    if (QTreeWidgetItem* item = currentItem(); item && item->isSelected())
        return indexOfTopLevelItem(item);
    const QList<QTreeWidgetItem*> selected = selectedItems();
    return selected.isEmpty() ? -1 : indexOfTopLevelItem(selected.first());
}

void CDTrackListView::SelectAll() {
    for (int i = 0; i < topLevelItemCount(); ++i) topLevelItem(i)->setSelected(true);
}

void CDTrackListView::InvertSelection() {
    for (int i = 0; i < topLevelItemCount(); ++i)
        topLevelItem(i)->setSelected(!topLevelItem(i)->isSelected());
}

}  // namespace cantovel
