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
    void List1_Click(QListWidgetItem *item);
    void Command1_Click(); // 增加
    void Command2_Click(); // 删除
    void Command4_Click(); // 修改
    void Command3_Click(); // 取消
    void fillList();
    void clearBoxes();

    QGroupBox *Frame1;
    QGroupBox *Frame2;
    QLabel *Label1;
    QLabel *Label2;
    QLabel *Label3;
    QLabel *Label4;
    QListWidget *List1;
    QLineEdit *Text1;
    QLineEdit *Text2;
    QLineEdit *Text3;
    QPushButton *Command1;
    QPushButton *Command2;
    QPushButton *Command3;
    QPushButton *Command4;

    QString m_uName1;
    QString m_uPower1;
    store::Database m_db;
    store::Recordset m_rs;
    int m_count = 0;
    QString m_sql;
};
