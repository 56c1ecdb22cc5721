#pragma once
// The two record windows (per-stock records, fund records): the grid shows
// the result of the window's query through SeachA, the right button pops up
// mnufile, and mnudel deletes the record of the grid's current row by its
// position in the record set of the last fill, then fills again.

#include "QueryGrid.h"
#include "ReportWindow.h"

namespace reports {

class RecordWindow : public ReportWindow {
    Q_OBJECT
public:
    // Fills the grid from `Sqltxt` and keeps its record set for deletion.
    // Nobody uses the result.
    int16_t SeachA(QString Sqltxt);

protected:
    RecordWindow(const QString &objectName, const QString &title, OnError fillErrors, QWidget *parent);

    // The window's query, built on load and after each deletion.
    virtual QString buildQuery() const = 0;

    void FillGrid() override;
    void formUnload() override;

    QString m_Sqltxt;
    store::Recordset m_rs;

private:
    void onMSFlexGrid1MouseDown(int button, int x, int y);
    void onMnudelClick();

    OnError m_fillErrors;
};

} // namespace reports
