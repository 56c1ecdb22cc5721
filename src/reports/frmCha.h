#pragma once
// Per-stock records: every trade of one stock of the user in date order;
// the right-button menu deletes the selected trade.

#include "RecordWindow.h"

class frmCha : public reports::RecordWindow {
    Q_OBJECT
public:
    explicit frmCha(QWidget *parent = nullptr);

    // The user, the rights text and the stock code to list.
    void GetMame(const QString &GuName, const QString &GuPower, const QString &Code1);

protected:
    QString buildQuery() const override;

private:
    QString m_Code1;
};
