#pragma once
// The picture box of the chart: a persistent image (the drawing survives being
// covered and resized, as with automatic redraw), a user scale, and the two
// drawing operations the chart needs: a line and an outlined box.

#include <QColor>
#include <QImage>
#include <QWidget>

namespace platform {

class PictureBox : public QWidget {
    Q_OBJECT
public:
    explicit PictureBox(QWidget *parent = nullptr);

    // Width and height in the current scale (pixels until scale() is called).
    double scaleWidth() const { return m_scaleWidth; }
    double scaleHeight() const { return m_scaleHeight; }

    // User scale: (x1, y1) is the top left corner, (x2, y2) the bottom right.
    // Equal coordinates cannot make a scale and raise a runtime error.
    void scale(double x1, double y1, double x2, double y2);
    // Clears the persistent image to the background colour.
    void cls();
    void line(double x1, double y1, double x2, double y2, const QColor &color);
    void box(double x1, double y1, double x2, double y2, const QColor &color);

    // The persistent image as it would be shown, in device pixels (its
    // devicePixelRatio() is the window's).
    const QImage &image() const { return m_image; }
    // Pixel position of a point in the current scale.
    QPointF toPixel(double x, double y) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void ensureImage();

    QImage m_image;
    double m_left = 0, m_top = 0;
    double m_scaleWidth = 0, m_scaleHeight = 0;
    bool m_userScale = false;
};

} // namespace platform
