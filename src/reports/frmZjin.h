#pragma once
// Fund records: every deposit and withdrawal of the user in date order; the
// right-button menu deletes the selected movement. Unlike the per-stock
// window, its fill drops errors and goes on.

#include "RecordWindow.h"

namespace reports {

class frmZjin : public RecordWindow {
    Q_OBJECT
public:
    explicit frmZjin(QWidget *parent = nullptr);

protected:
    QString buildQuery() const override;
};

} // namespace reports
