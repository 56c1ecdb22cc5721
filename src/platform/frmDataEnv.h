#pragma once
// The settings window: the six fee values of 税率表, the list of tables, and
// a query console that stays inert (it runs on a database handle that has
// been closed again by the time "执行" is pressed).

#include "store/Database.h"
#include "ui/Form.h"

#include <QList>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace ui {
class FlexGrid;
}

class frmDataEnv : public ui::Form {
    Q_OBJECT
public:
    explicit frmDataEnv(QWidget *parent = nullptr);
    ~frmDataEnv() override;

    int16_t ReadA(const QString &sql);
    int16_t WriteA(const QString &sql);
    int16_t SeachA(const QString &sql);

    // Opens the market-data settings window; the main window supplies it.
    void setDataSetOpener(std::function<void()> opener) { m_openDataSet = std::move(opener); }

protected:
    void formLoad() override;

private:
    void onCommand1Click();
    void onCommand2Click();
    void onCommand4Click();

    QList<QLineEdit *> m_SetShui;
    QListWidget *m_List1;
    QLineEdit *m_Text10;
    ui::FlexGrid *m_MSHFlexGrid1;
    store::Database m_db;
    store::Recordset m_current;
    QString m_sql;
    std::function<void()> m_openDataSet;
};
