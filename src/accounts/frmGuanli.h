#pragma once
// User management: lists the accounts and adds, deletes and changes them.

#include "store/Database.h"
#include "ui/Form.h"

class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;

class frmGuanli : public ui::Form {
    Q_OBJECT
public:
    explicit frmGuanli(QWidget *parent = nullptr);
    ~frmGuanli() override;

    // The caller's name (upper case, possibly empty) and role.
    void GetName(QString uName1, QString uPower1);

protected:
    void formLoad() override;
    void formUnload() override;

private:
    void onList1Click(QListWidgetItem *item);
    void onCommand1Click(); // 增加
    void onCommand2Click(); // 删除
    void onCommand4Click(); // 修改
    void onCommand3Click(); // 取消
    void fillList();
    void clearBoxes();

    QGroupBox *m_Frame1;
    QGroupBox *m_Frame2;
    QLabel *m_Label1;
    QLabel *m_Label2;
    QLabel *m_Label3;
    QLabel *m_Label4;
    QListWidget *m_List1;
    QLineEdit *m_Text1;
    QLineEdit *m_Text2;
    QLineEdit *m_Text3;
    QPushButton *m_Command1;
    QPushButton *m_Command2;
    QPushButton *m_Command3;
    QPushButton *m_Command4;

    QString m_uName1;
    QString m_uPower1;
    store::Database m_db;
    store::Recordset m_rs;
    int m_count = 0;
    QString m_sql;
};
