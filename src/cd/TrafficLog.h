#pragma once
// The CDDB access player's traffic log: read-only text that keeps everything appended to
// it. A server may answer with megabytes on one line, which a text editor widget lays out
// whole at every append; this view keeps the text with the places its lines start and
// draws, in a fixed-pitch font, only the part of the lines that shows.

#include <QAbstractScrollArea>
#include <QList>
#include <QString>

namespace cantovel {

class TrafficLog : public QAbstractScrollArea {
    Q_OBJECT
  public:
    explicit TrafficLog(QWidget* parent = nullptr);

    // Adds the text as it stands and scrolls to its end, where the caret would stand.
    void append(const QString& text);
    void clear();
    // Everything appended since the last clear, as it was given.
    QString toPlainText() const { return text_; }
    int lineCount() const { return int(starts_.size()); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    // Line `index` as it shows: without its line end.
    QStringView line(int index) const;
    int visibleLines() const;
    int visibleColumns() const;
    void updateScrollBars();

    QString text_;
    QList<qsizetype> starts_{0};  // where each line starts in text_
    qsizetype longest_ = 0;       // characters in the longest line
    int charWidth_ = 1;
    int lineHeight_ = 1;
};

}  // namespace cantovel
