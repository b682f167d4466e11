#pragma once
// A progress bar drawn as a filled shape whose width is set directly, in twips (15 to a
// pixel), as the CD to MP3 window sets it.

#include <QWidget>

namespace cantovel {

class ProgressShape : public QWidget {
    Q_OBJECT
  public:
    // `designWidth` in twips: the full bar.
    ProgressShape(double designWidth, QWidget* parent = nullptr);

    double Width() const { return width_; }
    void setWidth(double twips);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    double width_;
};

}  // namespace cantovel
