#pragma once
// Profit and loss: one row per stock sold at least once, with the latest
// sale date, the average net selling price, the shares sold, the net
// proceeds and the profit against the average purchase cost. 16-bit money
// figures; no menu.

#include "ReportWindow.h"

class frmYkui : public reports::ReportWindow {
    Q_OBJECT
public:
    explicit frmYkui(QWidget *parent = nullptr);

protected:
    void FillGrid() override;
};
