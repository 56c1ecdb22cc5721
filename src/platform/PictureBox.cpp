#include "PictureBox.h"

#include "base/RuntimeError.h"

#include <QPainter>
#include <QResizeEvent>

namespace platform {

PictureBox::PictureBox(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAutoFillBackground(false);
    m_scaleWidth = width();
    m_scaleHeight = height();
}

void PictureBox::ensureImage()
{
    // The image holds device pixels (twice as many each way at 200 %), so
    // candles are as sharp as the text; everything is drawn on it in logical
    // units. It only grows, so a drawing made in a larger window is kept.
    const qreal dpr = devicePixelRatioF();
    const QSize logical = m_image.isNull() ? QSize() : m_image.deviceIndependentSize().toSize();
    const QSize want = size().expandedTo(logical).expandedTo(QSize(1, 1));
    if (logical == want && m_image.devicePixelRatio() == dpr)
        return;
    QImage grown(want * dpr, QImage::Format_RGB32);
    grown.setDevicePixelRatio(dpr);
    grown.fill(Qt::white);
    if (!m_image.isNull()) {
        QPainter p(&grown);
        p.drawImage(QPointF(0, 0), m_image);
    }
    m_image = grown;
}

void PictureBox::scale(double x1, double y1, double x2, double y2)
{
    if (x1 == x2 || y1 == y2)
        throw base::RuntimeError(5, QStringLiteral("无效的过程调用或参数"));
    m_left = x1;
    m_top = y1;
    m_scaleWidth = x2 - x1;
    m_scaleHeight = y2 - y1;
    m_userScale = true;
}

void PictureBox::cls()
{
    ensureImage();
    m_image.fill(Qt::white);
    update();
}

QPointF PictureBox::toPixel(double x, double y) const
{
    const double w = m_userScale ? m_scaleWidth : double(width());
    const double h = m_userScale ? m_scaleHeight : double(height());
    const double px = w != 0 ? (x - m_left) / w * width() : 0;
    const double py = h != 0 ? (y - m_top) / h * height() : 0;
    return QPointF(px, py);
}

void PictureBox::line(double x1, double y1, double x2, double y2, const QColor &color)
{
    ensureImage();
    QPainter p(&m_image);
    p.setPen(QPen(color, 0));
    p.drawLine(toPixel(x1, y1), toPixel(x2, y2));
    update();
}

void PictureBox::box(double x1, double y1, double x2, double y2, const QColor &color)
{
    ensureImage();
    QPainter p(&m_image);
    p.setPen(QPen(color, 0));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(toPixel(x1, y1), toPixel(x2, y2)).normalized());
    update();
}

void PictureBox::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.fillRect(rect(), Qt::white);
    if (!m_image.isNull())
        p.drawImage(QPointF(0, 0), m_image);
}

void PictureBox::resizeEvent(QResizeEvent *event)
{
    if (!m_userScale) {
        m_scaleWidth = event->size().width();
        m_scaleHeight = event->size().height();
    }
    ensureImage();
    QWidget::resizeEvent(event);
}

} // namespace platform
