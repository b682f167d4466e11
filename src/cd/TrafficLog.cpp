#include "cd/TrafficLog.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <climits>

namespace cantovel {

TrafficLog::TrafficLog(QWidget* parent) : QAbstractScrollArea(parent) {
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    const QFontMetrics fm(font());
    charWidth_ = std::max(1, fm.horizontalAdvance(QLatin1Char('M')));
    lineHeight_ = std::max(1, fm.lineSpacing());
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
    setFocusPolicy(Qt::StrongFocus);
    updateScrollBars();
}

void TrafficLog::append(const QString& text) {
    if (text.isEmpty()) return;
    const qsizetype from = text_.size();
    text_ += text;
    for (qsizetype i = text_.indexOf(u'\n', from); i >= 0; i = text_.indexOf(u'\n', i + 1)) {
        longest_ = std::max<qsizetype>(longest_, line(lineCount() - 1).size());
        starts_.append(i + 1);
    }
    const qsizetype last = line(lineCount() - 1).size();
    longest_ = std::max(longest_, last);
    updateScrollBars();
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    // The caret at the end of the last line stays in view.
    horizontalScrollBar()->setValue(int(std::max<qsizetype>(0, last - visibleColumns() + 1)));
    viewport()->update();
}

void TrafficLog::clear() {
    text_.clear();
    starts_ = {0};
    longest_ = 0;
    updateScrollBars();
    viewport()->update();
}

QStringView TrafficLog::line(int index) const {
    const qsizetype start = starts_[index];
    qsizetype end = index + 1 < starts_.size() ? starts_[index + 1] - 1 : text_.size();
    if (end > start && text_[end - 1] == u'\r') --end;
    return QStringView(text_).mid(start, end - start);
}

int TrafficLog::visibleLines() const {
    return std::max(1, viewport()->height() / lineHeight_);
}

int TrafficLog::visibleColumns() const {
    return std::max(1, (viewport()->width() - 4) / charWidth_);
}

void TrafficLog::updateScrollBars() {
    verticalScrollBar()->setPageStep(visibleLines());
    verticalScrollBar()->setRange(0, std::max(0, lineCount() - visibleLines()));
    horizontalScrollBar()->setPageStep(visibleColumns());
    horizontalScrollBar()->setSingleStep(1);
    const qsizetype columns = std::min<qsizetype>(longest_ + 1, INT_MAX);
    horizontalScrollBar()->setRange(0, int(std::max<qsizetype>(0, columns - visibleColumns())));
}

void TrafficLog::paintEvent(QPaintEvent*) {
    QPainter p(viewport());
    p.setPen(palette().color(QPalette::Text));
    const QFontMetrics fm(font());
    const int first = verticalScrollBar()->value();
    const qsizetype column = horizontalScrollBar()->value();
    const int columns = visibleColumns() + 1;
    for (int row = 0; row <= visibleLines() && first + row < lineCount(); ++row) {
        QString shown = line(first + row).mid(column, columns).toString();
        // Control characters (tabs among them) take one column, shown as a blank.
        for (QChar& c : shown)
            if (c.unicode() < 0x20) c = u' ';
        p.drawText(2, row * lineHeight_ + fm.ascent(), shown);
    }
}

void TrafficLog::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBars();
}

void TrafficLog::keyPressEvent(QKeyEvent* event) {
    QScrollBar* v = verticalScrollBar();
    switch (event->key()) {
        case Qt::Key_Up:
            v->triggerAction(QAbstractSlider::SliderSingleStepSub);
            break;
        case Qt::Key_Down:
            v->triggerAction(QAbstractSlider::SliderSingleStepAdd);
            break;
        case Qt::Key_PageUp:
            v->triggerAction(QAbstractSlider::SliderPageStepSub);
            break;
        case Qt::Key_PageDown:
            v->triggerAction(QAbstractSlider::SliderPageStepAdd);
            break;
        case Qt::Key_Home:
            v->setValue(0);
            horizontalScrollBar()->setValue(0);
            break;
        case Qt::Key_End:
            v->setValue(v->maximum());
            break;
        default:
            QAbstractScrollArea::keyPressEvent(event);
    }
}

}  // namespace cantovel
