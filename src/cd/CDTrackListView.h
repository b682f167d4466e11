#pragma once
// The track list of the CD windows (the control panel, CD to WAV): one line a track with
// its start, length, size and flags, filled from a CD reader. Multi-select; the line with
// the focus is the "selected item".

#include <QTreeWidget>

#include "platform/cdreader/CDReader.h"

namespace cantovel {

class CDTrackListView : public QTreeWidget {
    Q_OBJECT
  public:
    explicit CDTrackListView(QWidget* parent = nullptr);

    // Pictures of the image list, by their numbers: 2 an audio track, 3 a data track.
    static constexpr int AudioPicture = 2, DataPicture = 3;

    // Reads the disc into the list (errors passed over): empties it; with a disc present
    // but no table of contents sets `trackCountShown` to the reader's count (0) and shows
    // "Unable to read CD directory"; else sets `trackCountShown` and adds a line for each
    // track. False when nothing was listed.
    bool Fill(const CDReader& reader, long& trackCountShown);

    // "h:mm:ss", with ".ff" frames when asked.
    static QString PositionText(quint32 packed, bool withFrames);
    // A drive as the drive lists show it: "<D:>  Name".
    static QString DriveText(const CDDevice& device);

    // The one-based picture number a line shows.
    int Picture(int line) const;
    bool anySelected() const;
    // The zero-based index of the focused line (or the first selected one); -1 if none.
    int selectedIndex() const;
    // Selects every line, or flips each line's selection.
    void SelectAll();
    void InvertSelection();
};

}  // namespace cantovel
