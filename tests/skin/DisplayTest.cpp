// The main window's face, read back from what it paints.
#include <gtest/gtest.h>

#include "support/MainWindowFixture.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class DisplayTest : public MainWindowFixture {
  protected:
    // What cell `i` of imgTime shows on the face, at the built-in digits' size.
    QImage cellOnFace(frmMain& m, int i) {
        return part(face(m), QRect(m.imgTime[i].rect.topLeft(), QSize(10, 16)));
    }
    QImage digit(frmMain& m, int d) { return picture(m.clpDigits.GraphicCell(d)); }
    QImage blank(frmMain& m, int i) {
        return background(m, QRect(m.imgTime[i].rect.topLeft(), QSize(10, 16)));
    }
    // The digits a field shows, "-" for a blank cell, "?" for anything else.
    QString shown(frmMain& m, int first, int count) {
        QString s;
        for (int i = first; i < first + count; ++i) {
            const QImage cell = cellOnFace(m, i);
            QChar c = u'?';
            if (cell == blank(m, i)) c = u'-';
            for (int d = 0; d < 10; ++d)
                if (cell == digit(m, d)) c = QChar(u'0' + d);
            s += c;
        }
        return s;
    }
};

TEST_F(DisplayTest, NumberAndClockFieldsShowTheirDigits) {
    mixer->volume = 42;
    frmMain& m = load();
    // The start shows both volumes.
    EXPECT_EQ(shown(m, 12, 3), QStringLiteral("100"));
    EXPECT_EQ(shown(m, 15, 3), QStringLiteral("-42"));
    // Number fields are right-aligned without leading zeros; other characters are passed
    // over and the walk stops at the leftmost cell.
    const struct {
        int field;
        const char* text;
        int firstCell, cells;
        const char* shows;
    } cases[] = {{0, "7", 12, 3, "--7"},
                 {3, "100", 15, 3, "100"},
                 {0, "4x2", 12, 3, "-42"},
                 {0, "12345", 12, 3, "345"},
                 // Clock fields show six digits with leading zeros, the last six of more.
                 {-1, "1234567", 0, 6, "234567"},
                 {-1, "342", 0, 6, "000342"},
                 {-7, "32507", 6, 6, "032507"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        if (c.field >= 0)
            m.ShowNumberField(c.field, QLatin1String(c.text));
        else
            m.ShowClockField(-c.field - 1, QLatin1String(c.text));
        EXPECT_EQ(shown(m, c.firstCell, c.cells), QLatin1String(c.shows));
    }
    EXPECT_EQ(frmMain::ClockText(3 * 3600 + 25 * 60 + 7), QStringLiteral("32507"));
    // The two clock fields keep their own texts.
    EXPECT_EQ(shown(m, 0, 6), QStringLiteral("000342"));

    // An equal text repaints nothing: new digits would show if the field were painted.
    m.clpDigits.setPicture(QPixmap());
    m.ShowClockField(0, QStringLiteral("342"));
    m.clpDigits.setPicture(QPixmap(QStringLiteral(":/res/103")));
    EXPECT_EQ(shown(m, 0, 6), QStringLiteral("000342"));

    // An empty text blanks the clock field; once blank, another leaves what the cells hold.
    m.ShowClockField(6, QString());
    EXPECT_EQ(shown(m, 6, 6), QStringLiteral("------"));
    m.imgTime[6].setPicture(m.clpDigits.GraphicCell(9));
    m.ShowClockField(6, QString());
    EXPECT_EQ(shown(m, 6, 6), QStringLiteral("9-----"));
}

TEST_F(DisplayTest, BalanceDragSnapsToTheCentre) {
    frmMain& m = load();
    // A grab at the thumb's first column, carried to each place from 217 to 279.
    for (int target = 217; target <= 279; ++target) {
        m.SetBalance(-1000);
        const QPoint grabAt(m.imgBalance.Left(), 152);
        hover(m, grabAt);
        press(m, grabAt);
        drag(m, QPoint(target, 152));
        release(m, QPoint(target, 152));
        const int expected = target >= 246 && target <= 250 ? 248 : target;
        EXPECT_EQ(m.imgBalance.Left(), expected) << "dragged to " << target;
    }
    EXPECT_EQ(m.GetBalance(), 1000);
    m.SetBalance(-1000);
    hover(m, QPoint(217, 152));
    press(m, QPoint(217, 152));
    drag(m, QPoint(247, 152));
    release(m, QPoint(247, 152));
    EXPECT_EQ(m.GetBalance(), 0);
    EXPECT_EQ(part(face(m), QRect(248, 149, 5, 8)), picture(m.imgBalance.picture).copy(0, 0, 5, 8));
    // Past its ends the thumb stops.
    press(m, QPoint(248, 152));
    drag(m, QPoint(400, 152));
    release(m, QPoint(400, 152));
    EXPECT_EQ(m.imgBalance.Left(), 279);
}

TEST_F(DisplayTest, RollingUpAndDownTwiceRestoresThePicture) {
    frmMain& m = load();
    m.ShowClockField(0, QStringLiteral("1234"));
    const QImage before = face(m);
    // A frameless 300 by 175 face: where no control paints, the built-in picture.
    EXPECT_EQ(m.size(), QSize(300, 175));
    EXPECT_TRUE(m.windowFlags() & Qt::FramelessWindowHint);
    EXPECT_EQ(part(before, QRect(0, 0, 300, 40)), background(m, QRect(0, 0, 300, 40)));
    for (int round = 0; round < 2; ++round) {
        m.RollUp();
        EXPECT_EQ(m.height(), 38);
        EXPECT_EQ(temp().mnuRollup->text(), QStringLiteral("&Roll Down"));
        EXPECT_EQ(m.imgRollUp.toolTip, QStringLiteral("Roll Down"));
        EXPECT_EQ(part(face(m), QRect(0, 0, 300, 38)), picture(m.imgBack.picture));
        m.RollUp();
        EXPECT_EQ(m.height(), 175);
        EXPECT_EQ(temp().mnuRollup->text(), QStringLiteral("&Roll Up"));
        EXPECT_EQ(m.imgRollUp.toolTip, QStringLiteral("Roll Up"));
        EXPECT_EQ(face(m), before);
    }
    // The roll-up box and a double click on the caption roll it too.
    click(m, QPoint(279, 7));
    EXPECT_EQ(m.height(), 38);
    mouse(m, QEvent::MouseButtonDblClick, QPoint(150, 12), Qt::LeftButton, Qt::LeftButton);
    release(m, QPoint(150, 12));
    EXPECT_EQ(m.height(), 175);
}

TEST_F(DisplayTest, ALeftPressShowsThePressedFaceUntilReleaseARightOneNothing) {
    frmMain& m = load();
    const QImage before = face(m);
    const QRect stop(89, 142, 24, 18);
    press(m, QPoint(95, 150));
    EXPECT_EQ(part(face(m), stop), picture(m.clpButtons.GraphicCell(3)));
    // Only the pressed button shows its face.
    EXPECT_EQ(part(face(m), QRect(17, 142, 72, 18)), part(before, QRect(17, 142, 72, 18)));
    release(m, QPoint(95, 150));
    EXPECT_EQ(face(m), before);
    // A right button press paints nothing.
    for (const QPoint& p : {QPoint(95, 150), QPoint(170, 44)}) {
        press(m, p, Qt::RightButton);
        EXPECT_EQ(face(m), before);
        release(m, p, Qt::RightButton);
    }
    EXPECT_FALSE(m.tmrVolume.isEnabled());
    // The digits do not carry the window as the background does.
    const QPoint at = m.pos();
    press(m, QPoint(30, 50));
    drag(m, QPoint(60, 50));
    release(m, QPoint(60, 50));
    EXPECT_EQ(m.pos(), at);
    EXPECT_EQ(m.imgButton[5].toolTip, "Open File");
    EXPECT_EQ(m.imgVolumeButton[3].toolTip, "Decrease Master Volume");
    EXPECT_EQ(m.imgTime[13].toolTip, "Cantovel Volume");
}

}  // namespace
