// The grid filled with 50,000 rows of nine columns and read back.
#include "Bench.h"

#include "ui/FlexGrid.h"

#include <QElapsedTimer>

#include <cstdio>

TESSALY_BENCH(grid_50k)
{
    std::vector<double> samples;
    for (int run = 0; run < 5; ++run) {
        QElapsedTimer t;
        t.start();
        ui::FlexGrid g;
        g.setCols(9);
        g.setRows(50001);
        {
            const ui::FlexGrid::BulkUpdate bulk(g);
            for (int r = 1; r <= 50000; ++r)
                for (int c = 1; c < 9; ++c)
                    g.setTextMatrix(r, c, QString::number(r * 10 + c));
        }
        qsizetype chars = 0;
        for (int r = 1; r <= 50000; ++r)
            chars += g.textMatrix(r, 8).size();
        samples.push_back(t.nsecsElapsed() / 1e6);
        if (chars == 0 || g.model()->rowCount() != 50001)
            std::fprintf(stderr, "grid bench: the rows did not come back\n");
    }
    bench::figure(QStringLiteral("grid_50k_ms"), bench::median(samples), QStringLiteral("ms"));
}
