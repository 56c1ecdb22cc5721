#pragma once
// The value-over-time chart of the analysis window: the account's market
// value plus cash (red) and the money invested (blue), day by day, with dates
// along the bottom and amounts along the left. The picture is drawn at the
// screen's device pixels; moving the mouse over it shows the day's figures.

#include "analysis/Portfolio.h"

#include <QImage>
#include <QWidget>

#include <vector>

namespace analysis {

class ValueChart : public QWidget {
    Q_OBJECT
public:
    explicit ValueChart(QWidget *parent = nullptr);

    void setSeries(std::vector<ValuePoint> series);
    const std::vector<ValuePoint> &series() const { return m_series; }

    // The figures of the day under the mouse ("" when it is not over the plot).
    QString hoverText() const;

    // Draws the chart into `image` (whose device pixel ratio says how many
    // pixels a point is); used for the screen and for the benchmark.
    void render(QImage &image) const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QRectF plotRect(const QSizeF &size) const;
    int dayAt(double x) const;

    std::vector<ValuePoint> m_series;
    int64_t m_min = 0;
    int64_t m_max = 0;
    QImage m_cache;
    int m_hover = -1;
};

} // namespace analysis
