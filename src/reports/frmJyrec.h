#pragma once
// Trade details: every purchase and sale of the user, code by code (first the
// purchases, then the sales of each code), with the fee and the signed
// amount of each trade. Purchase rows are red, sale rows blue. Read-only:
// mnudel is present but does nothing.

#include "ReportWindow.h"

#include <QColor>

namespace reports {
inline const QColor kPurchaseColor = QColor(255, 0, 0);
inline const QColor kSaleColor = QColor(0, 0, 255);
} // namespace reports

class frmJyrec : public reports::ReportWindow {
    Q_OBJECT
public:
    explicit frmJyrec(QWidget *parent = nullptr);

protected:
    void FillGrid() override;

private:
    // Appends the rows of one block (the purchases or the sales of a code),
    // from grid row `r` on; returns the row after the block.
    int16_t appendTrades(const QString &code, bool purchase, int16_t r);
};
