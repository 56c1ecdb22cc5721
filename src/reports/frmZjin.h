#pragma once
// Fund records: every deposit and withdrawal of the user in date order; the
// right-button menu deletes the selected movement. Unlike the per-stock
// window, its fill drops errors and goes on.

#include "RecordWindow.h"

class frmZjin : public reports::RecordWindow {
    Q_OBJECT
public:
    explicit frmZjin(QWidget *parent = nullptr);

protected:
    QString buildQuery() const override;
};
