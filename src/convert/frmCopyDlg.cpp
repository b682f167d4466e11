#include "convert/frmCopyDlg.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>
#include <limits>

#include "app/Utilities.h"
#include "cd/CDTrackListView.h"
#include "convert/frmCDtoWAV.h"
#include "platform/cdreader/CDReader.h"
#include "platform/clock/Clock.h"
#include "platform/msgbox/MsgBox.h"

namespace cantovel {

namespace {

// CD audio's own rate: 44,100 frames of two 16-bit samples a second.
constexpr double kBytesPerSecond = 176400.0;

QLabel* valueLabel(const char* text, QWidget* parent) {
    auto* l = new QLabel(QString::fromLatin1(text), parent);
    l->setFrameShape(QFrame::Panel);
    l->setFrameShadow(QFrame::Sunken);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    l->setMinimumWidth(80);
    return l;
}

}  // namespace

frmCopyDlg::frmCopyDlg(frmCDtoWAV& owner)
    : Form(QStringLiteral("frmCopyDlg"), &owner, Qt::Dialog), owner_(owner) {
    setWindowTitle(QStringLiteral("Copying Data..."));
    auto* layout = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    const char* headings[] = {"", "Progress", "Percent", "Speed", "Elapsed", "Remaining"};
    for (int c = 0; c < 6; ++c)
        grid->addWidget(new QLabel(QString::fromLatin1(headings[c]), this), 0, c);
    auto row = [&](int r, const char* caption, QProgressBar*& meter, QLabel*& percent,
                   QLabel*& speed, QLabel*& time, QLabel*& remaining) {
        grid->addWidget(new QLabel(QString::fromLatin1(caption), this), r, 0);
        meter = new QProgressBar(this);
        meter->setRange(0, 100);
        meter->setTextVisible(false);
        grid->addWidget(meter, r, 1);
        percent = valueLabel("0.0 %", this);
        speed = valueLabel("0.0 X", this);
        time = valueLabel("00:00:00", this);
        remaining = valueLabel("00:00:00", this);
        grid->addWidget(percent, r, 2);
        grid->addWidget(speed, r, 3);
        grid->addWidget(time, r, 4);
        grid->addWidget(remaining, r, 5);
    };
    row(1, "Current Track:", Meter1, lblPercent1, lblSpeed1, lblTime1, lblRemaining1);
    row(2, "Entire Process:", Meter2, lblPercent2, lblSpeed2, lblTime2, lblRemaining2);
    grid->setColumnStretch(1, 1);
    layout->addLayout(grid);
    layout->addWidget(new QLabel(QStringLiteral("Status Messages:"), this));
    Messages = new QListWidget(this);
    layout->addWidget(Messages, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    btnAbort = new QPushButton(this);
    buttons->addWidget(btnAbort);
    layout->addLayout(buttons);
    resize(560, 300);

    connect(btnAbort, &QPushButton::clicked, this, [this] { btnAbort_Click(); });
    connect(&Timer, &cantovel::Timer::timeout, this, [this] { Timer_Timer(); });
    connect(&Timer2, &cantovel::Timer::timeout, this, [this] { Timer2_Timer(); });
    Form_Load();
}

CDReader* frmCopyDlg::reader() const {
    return owner_.CDReader.get();
}

void frmCopyDlg::Form_Load() {
    Messages->clear();
    btnAbort->setText(QStringLiteral("&Cancel"));
    Aborted = CopyFailed = VFalse;
    TotalTime = 0;
    TotalFrames = 0;
    CurrentTrack = -1;
    const QList<CDTrack> tracks = reader() ? reader()->Tracks() : QList<CDTrack>();
    const CDTrackListView& list = *owner_.ListView;
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        if (!list.topLevelItem(i)->isSelected() || i >= tracks.size() || !tracks[i].IsAudio)
            continue;
        TotalFrames += qint32(CDReader::ToFrames(tracks[i].Length));
        if (CurrentTrack == -1) CurrentTrack = i;
    }
    if (CurrentTrack == -1) {
        // The selected item's Index counts from 1: this names the line after it.
        const int selected = list.selectedIndex();
        if (selected >= 0) {
            CurrentTrack = selected + 1;
            if (CurrentTrack < tracks.size())
                TotalFrames = qint32(CDReader::ToFrames(tracks[CurrentTrack].Length));
        }
    }
    TrackFramesDone = TotalFramesDone = 0;
    Meter1->setValue(0);
    Meter2->setValue(0);
    Timer2.setEnabled(true);
}

void frmCopyDlg::Timer2_Timer() {
    // Once, when the dialog is on the screen.
    Timer2.setEnabled(false);
    CopyTrack(CurrentTrack);
}

void frmCopyDlg::CopyTrack(qint32 index) {
    TrackFramesDone = 0;
    Meter1->setValue(0);
    CurrentTrack = index;
    const QList<CDTrack> tracks = reader() ? reader()->Tracks() : QList<CDTrack>();
    if (index >= 0 && index < tracks.size())
        TrackFrames = qint32(CDReader::ToFrames(tracks[index].Length));
    if (reader()) {
        const QString name = reader()->TrackFileName(BaseName, index);
        reader()->CopyTrack(index, name);
    }
    Messages->addItem(QStringLiteral("Copying Track ") + Format(index + 1, QStringLiteral("00")));
}

void frmCopyDlg::StartTimer() {
    TrackStartTime = qint32(Clock::get().msecs());
    LastTrackTime = 0;
    Timer.setEnabled(true);
}

void frmCopyDlg::StopTimer() {
    Timer.setEnabled(false);
    if (!CopyFailed) {
        Meter1->setValue(100);
        lblPercent1->setText(QStringLiteral("100.0 %"));
        lblRemaining1->setText(TimeToString(0));
    }
}

qint32 frmCopyDlg::MulDiv(qint32 a, qint32 b, qint32 c) {
    if (c == 0) return -1;
    const double exact = double(qint64(a) * qint64(b)) / double(c);
    const double rounded = exact < 0 ? std::ceil(exact - 0.5) : std::floor(exact + 0.5);
    if (rounded > std::numeric_limits<qint32>::max() ||
        rounded < std::numeric_limits<qint32>::min())
        return -1;
    return qint32(rounded);
}

void frmCopyDlg::showRow(QLabel* percent, QLabel* speed, QLabel* time, QLabel* remaining,
                         QProgressBar* meter, qint32 framesDone, qint32 ms, qint32 frames) {
    // A statement that would divide by nothing is passed over: its label keeps its text.
    if (frames != 0) {
        const double p = double(framesDone) * 100 / frames;
        meter->setValue(int(float(p)));
        percent->setText(Format(p, QStringLiteral("0.0")) + QStringLiteral(" %"));
    }
    if (ms != 0) {
        const double x = (double(framesDone) * 2352 / (ms / 1000.0)) / kBytesPerSecond;
        speed->setText(Format(x, QStringLiteral("0.0")) + QStringLiteral(" X"));
    }
    time->setText(TimeToString(ms));
    // Before the first frame MulDiv gives -1, and the remaining time reads negative.
    remaining->setText(TimeToString(qint64(MulDiv(ms, frames, framesDone)) - ms));
}

void frmCopyDlg::Timer_Timer() {
    if (!Timer.isEnabled() || !reader()) return;
    const qint32 t = qint32(Clock::get().msecs()) - TrackStartTime;
    TotalTime += t - LastTrackTime;
    LastTrackTime = t;
    const qint32 f = qint32(reader()->CopyPosition() - reader()->CopyStart());
    TotalFramesDone += f - TrackFramesDone;
    TrackFramesDone = f;
    showRow(lblPercent1, lblSpeed1, lblTime1, lblRemaining1, Meter1, f, t, TrackFrames);
    showRow(lblPercent2, lblSpeed2, lblTime2, lblRemaining2, Meter2, TotalFramesDone, TotalTime,
            TotalFrames);
}

void frmCopyDlg::completeRow2() {
    Meter2->setValue(100);
    lblPercent2->setText(QStringLiteral("100.0 %"));
    lblRemaining2->setText(TimeToString(0));
}

void frmCopyDlg::TrackFinished() {
    StopTimer();
    if (CopyFailed) {
        Messages->addItem(QStringLiteral(
            "Errors occurred during coversion process; copy was not completed successfully."));
        btnAbort->setText(QStringLiteral("Close"));
        CopyFailed = VFalse;
    } else if (Aborted) {
        completeRow2();
        Messages->addItem(QStringLiteral("CD to WAV conversion cancelled."));
        MsgBoxShow(QStringLiteral("CD to WAV conversion has been cancelled."),
                   Mb::Information | Mb::SetForeground);
        hide();
    } else {
        qint32 next = CurrentTrack;
        FindNextTrack(next);
        if (next == CurrentTrack) {
            Messages->addItem(QStringLiteral("Copy completed without any errors."));
            btnAbort->setText(QStringLiteral("Close"));
            completeRow2();
        } else {
            CopyTrack(next);
        }
    }
}

void frmCopyDlg::FindNextTrack(qint32& index) {
    const QList<CDTrack> tracks = reader() ? reader()->Tracks() : QList<CDTrack>();
    const CDTrackListView& list = *owner_.ListView;
    const qint32 from = CurrentTrack;
    index = from;
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        if (i > from && list.topLevelItem(i)->isSelected() && i < tracks.size() &&
            tracks[i].IsAudio) {
            index = i;
            return;
        }
    }
}

void frmCopyDlg::btnAbort_Click() {
    if (reader() && reader()->CopyState() == 1) {
        Aborted = VTrue;
        reader()->StopCopy();
    } else {
        hide();
    }
}

bool frmCopyDlg::queryUnload(UnloadMode) {
    // While the reader copies, closing is a cancel; the dialog goes when the copy ends.
    if (reader() && reader()->CopyState() == 1) {
        Aborted = VTrue;
        reader()->StopCopy();
        return true;
    }
    return false;
}

bool frmCopyDlg::unloadEvent() {
    // A dialog discarded before its first copy must not start one on its way out.
    Timer.setEnabled(false);
    Timer2.setEnabled(false);
    return false;
}

}  // namespace cantovel
