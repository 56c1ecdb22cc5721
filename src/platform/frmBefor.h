#pragma once
// The operation platform: the window the signed-in user works from. It shows
// the holdings (or the raw trade records) in one grid with a price chart of
// the chosen stock, and opens every other window.

#include "Holdings.h"
#include "store/Database.h"
#include "ui/Form.h"

#include <QMainWindow>

class QAction;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QPushButton;
class QToolBar;

namespace ui {
class FlexGrid;
}

namespace platform {
class PictureBox;
struct QuoteSession;
} // namespace platform

class frmBefor : public QMainWindow {
    Q_OBJECT
public:
    explicit frmBefor(QWidget *parent = nullptr);
    ~frmBefor() override;

    void GetMame(const QString &GuName, const QString &GuPower);
    // Switches the grid to the user's raw trade records.
    void FrmRef();
    int16_t SeachA(const QString &sql);

    // Runs the load now if the first show has not done it yet.
    void load();
    bool rawMode() const { return m_rawMode; }

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void formLoad();
    void HoldList();
    void LoadRates();
    void quoteLookup(const QString &dataDir, const QString &source, const QString &code, bool draw, float &lastClose);
    // Opens the window of a toolbar caption; any other text does nothing.
    void onToolbar1ButtonClick(const QString &caption);
    // Deletes the record of the grid's current row from the raw records.
    void onMnuDelClick();
    void onCommand1Click();
    void onCommand2Click();
    void onCommand3Click();
    void onCommand4Click();
    void onCommand5Click();
    void onMSFlexGrid1Click();
    void onMSFlexGrid1DblClick();
    void onMSFlexGrid1MouseDown(int button, int x, int y);
    void openEntry(int which);
    void openReport(const QString &caption);
    void openSettings();
    QString rawQuery() const;
    void showRawRecords();

    QString m_GuName;
    QString m_GuPower;
    store::Database m_db;
    QString m_sql;
    store::Recordset m_current;
    bool m_rawMode = false;
    ui::LifeCycle m_life;
    std::unique_ptr<platform::QuoteSession> m_quote;

    QToolBar *m_Toolbar1;
    ui::FlexGrid *m_MSFlexGrid1;
    QLineEdit *m_Text1;
    QLineEdit *m_Text2;
    QLineEdit *m_Text3;
    QListWidget *m_List1;
    platform::PictureBox *m_pPic1;
    QMenu *m_mnuEdit;
};
