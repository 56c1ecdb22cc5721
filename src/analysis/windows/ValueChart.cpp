#include "ValueChart.h"

#include "analysis/Money.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace analysis {

namespace {
const QColor kValueColor(220, 0, 0);
const QColor kInvestedColor(0, 0, 220);

// A round step of about a fifth of `span` (1, 2 or 5 times a power of ten).
double niceStep(double span)
{
    const double raw = std::max(span / 5.0, 1.0);
    const double p = std::pow(10.0, std::floor(std::log10(raw)));
    for (double m : {1.0, 2.0, 5.0})
        if (m * p >= raw)
            return m * p;
    return 10 * p;
}

QString amountLabel(double yuan)
{
    if (std::fabs(yuan) >= 1e8)
        return QString::number(yuan / 1e8, 'g', 4) + QStringLiteral("亿");
    if (std::fabs(yuan) >= 1e4)
        return QString::number(yuan / 1e4, 'g', 4) + QStringLiteral("万");
    return QString::number(yuan, 'g', 6);
}
} // namespace

ValueChart::ValueChart(QWidget *parent) : QWidget(parent)
{
    setMouseTracking(true);
    setMinimumSize(320, 200);
    setAutoFillBackground(false);
}

void ValueChart::setSeries(std::vector<ValuePoint> series)
{
    m_series = std::move(series);
    m_min = 0;
    m_max = 0;
    for (const ValuePoint &p : m_series) {
        m_min = std::min({m_min, p.valueFen, p.investedFen});
        m_max = std::max({m_max, p.valueFen, p.investedFen});
    }
    m_hover = -1;
    m_cache = QImage();
    update();
}

QRectF ValueChart::plotRect(const QSizeF &size) const
{
    const QFontMetricsF fm(font());
    const double left = fm.horizontalAdvance(QStringLiteral("-8888.8万")) + 10;
    const double bottom = fm.height() + 10;
    return QRectF(left, 10, std::max(size.width() - left - 12, 10.0),
                  std::max(size.height() - bottom - 10 - fm.height(), 10.0));
}

int ValueChart::dayAt(double x) const
{
    const QRectF plot = plotRect(size());
    if (m_series.empty() || x < plot.left() || x > plot.right())
        return -1;
    const double n = double(m_series.size() - 1);
    return int(std::lround((x - plot.left()) / plot.width() * n));
}

void ValueChart::render(QImage &image) const
{
    const qreal dpr = image.devicePixelRatio();
    const QSizeF size = QSizeF(image.size()) / dpr;
    image.fill(Qt::white);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setFont(font());
    const QRectF plot = plotRect(size);
    const QFontMetricsF fm(font());
    p.setPen(QColor(120, 120, 120));
    p.drawRect(plot);
    if (m_series.empty()) {
        p.drawText(plot, Qt::AlignCenter, QStringLiteral("没有记录"));
        return;
    }

    // Amount axis: round steps between the lowest and highest figure.
    const double lo = double(m_min) / 100, hi = std::max(double(m_max) / 100, lo + 1);
    const double step = niceStep(hi - lo);
    const double axisLo = std::floor(lo / step) * step, axisHi = std::ceil(hi / step) * step;
    const auto yOf = [&](double yuan) { return plot.bottom() - (yuan - axisLo) / (axisHi - axisLo) * plot.height(); };
    const double n = std::max(double(m_series.size() - 1), 1.0);
    const auto xOf = [&](size_t i) { return plot.left() + double(i) / n * plot.width(); };
    for (double v = axisLo; v <= axisHi + step / 2; v += step) {
        const double y = yOf(v);
        p.setPen(QColor(225, 225, 225));
        p.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        p.setPen(Qt::black);
        p.drawText(QRectF(0, y - fm.height() / 2, plot.left() - 6, fm.height()), Qt::AlignRight | Qt::AlignVCenter,
                   amountLabel(v));
    }
    // Date axis: about one label per 110 points.
    const int labels = std::max(1, int(plot.width() / 110));
    for (int k = 0; k <= labels; ++k) {
        const size_t i = size_t(std::lround(double(k) / labels * n));
        if (i >= m_series.size())
            continue;
        const double x = xOf(i);
        p.setPen(QColor(120, 120, 120));
        p.drawLine(QPointF(x, plot.bottom()), QPointF(x, plot.bottom() + 4));
        p.setPen(Qt::black);
        const QString text = m_series[i].date.toString(QStringLiteral("yyyy-MM-dd"));
        const double w = fm.horizontalAdvance(text);
        const double left = std::clamp(x - w / 2, 0.0, size.width() - w);
        p.drawText(QPointF(left, plot.bottom() + 6 + fm.ascent()), text);
    }

    // The two lines; a pixel column that holds many days gets one point per day all the same.
    for (int which = 0; which < 2; ++which) {
        QPainterPath path;
        for (size_t i = 0; i < m_series.size(); ++i) {
            const double fen = double(which == 0 ? m_series[i].valueFen : m_series[i].investedFen);
            const QPointF pt(xOf(i), yOf(fen / 100));
            if (i == 0)
                path.moveTo(pt);
            else
                path.lineTo(pt);
        }
        p.setPen(QPen(which == 0 ? kValueColor : kInvestedColor, 1.5));
        p.drawPath(path);
    }
    // Legend.
    const QString legend[2] = {QStringLiteral("市值加现金"), QStringLiteral("投入资金")};
    double x = plot.left() + 8;
    for (int which = 0; which < 2; ++which) {
        p.setPen(QPen(which == 0 ? kValueColor : kInvestedColor, 2));
        p.drawLine(QPointF(x, plot.top() + 10), QPointF(x + 18, plot.top() + 10));
        p.setPen(Qt::black);
        p.drawText(QPointF(x + 22, plot.top() + 10 + fm.ascent() / 2 - 1), legend[which]);
        x += 30 + fm.horizontalAdvance(legend[which]);
    }
}

void ValueChart::paintEvent(QPaintEvent *)
{
    const qreal dpr = devicePixelRatioF();
    const QSize pixels = (QSizeF(size()) * dpr).toSize();
    if (m_cache.size() != pixels || m_cache.devicePixelRatio() != dpr) {
        m_cache = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
        m_cache.setDevicePixelRatio(dpr);
        render(m_cache);
    }
    QPainter p(this);
    p.drawImage(QPointF(0, 0), m_cache);
    if (m_hover < 0 || m_hover >= int(m_series.size()))
        return;
    const QRectF plot = plotRect(size());
    const double x = plot.left() + double(m_hover) / std::max(double(m_series.size() - 1), 1.0) * plot.width();
    p.setPen(QPen(QColor(90, 90, 90), 1, Qt::DashLine));
    p.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    const QString text = hoverText();
    const QFontMetricsF fm(font());
    QRectF box = fm.boundingRect(QRectF(0, 0, 400, 200), Qt::AlignLeft, text).adjusted(-5, -4, 5, 4);
    box.moveTopLeft(QPointF(x + 8 + box.width() > width() ? x - 8 - box.width() : x + 8, plot.top() + 24));
    p.fillRect(box, QColor(255, 255, 225));
    p.setPen(Qt::black);
    p.drawRect(box);
    p.drawText(box.adjusted(5, 4, -5, -4), Qt::AlignLeft, text);
}

void ValueChart::resizeEvent(QResizeEvent *event)
{
    m_cache = QImage();
    QWidget::resizeEvent(event);
}

QString ValueChart::hoverText() const
{
    if (m_hover < 0 || m_hover >= int(m_series.size()))
        return QString();
    const ValuePoint &v = m_series[size_t(m_hover)];
    return QStringLiteral("%1\n市值加现金 %2\n投入资金 %3\n盈亏 %4")
        .arg(v.date.toString(QStringLiteral("yyyy-MM-dd")), yuanText(v.valueFen), yuanText(v.investedFen),
             yuanText(v.valueFen - v.investedFen));
}

void ValueChart::mouseMoveEvent(QMouseEvent *event)
{
    const int day = dayAt(event->position().x());
    if (day != m_hover) {
        m_hover = day;
        update();
    }
}

void ValueChart::leaveEvent(QEvent *)
{
    m_hover = -1;
    update();
}

} // namespace analysis
