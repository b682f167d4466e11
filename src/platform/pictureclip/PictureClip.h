#pragma once
// A picture strip: one bitmap cut evenly into Rows x Cols cells, numbered row by row from
// 0. The cells are as large as the picture's own size allows, whatever that size is.

#include <QPixmap>

namespace cantovel {

class PictureClip {
  public:
    QPixmap Picture() const { return picture_; }
    void setPicture(const QPixmap& picture) { picture_ = picture; }

    int Rows() const { return rows_; }
    void setRows(int rows) { rows_ = rows > 0 ? rows : 1; }
    int Cols() const { return cols_; }
    void setCols(int cols) { cols_ = cols > 0 ? cols : 1; }

    int CellWidth() const { return picture_.width() / cols_; }
    int CellHeight() const { return picture_.height() / rows_; }

    // Cell `index` as a picture of its own; the empty picture for an index outside the
    // strip or a strip without a picture.
    QPixmap GraphicCell(int index) const;

  private:
    QPixmap picture_;
    int rows_ = 1;
    int cols_ = 1;
};

}  // namespace cantovel
