#pragma once
// The window "导入交割单": choose a statement file, see what would be stored
// (with the reason for every skipped or doubtful row), correct what a column
// means, and store it all in one step.

#include "ImportPreview.h"

#include "ui/Form.h"

#include <QList>

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ui {
class FlexGrid;
}

class frmImport : public ui::UserForm {
    Q_OBJECT
public:
    explicit frmImport(QWidget *parent = nullptr);
    ~frmImport() override;

    // Reads the file and shows its preview (what Enter in Text1 does).
    void loadFile(const QString &path);

private:
    void onCommand1Click();
    void onCommand2Click();
    // Box i of the column boxes Combo1_0, Combo1_1, ... chose what its column holds.
    void onCombo1Click(int i, int index);
    void readJournal();
    void buildMapping();
    void refreshPreview();

    QString m_path;
    importer::StatementTable m_table;
    importer::JournalState m_journal;
    QList<importer::PreviewRow> m_rows;

    QLineEdit *m_Text1;
    QPushButton *m_Command1;
    QLabel *m_Label2;
    QGridLayout *m_mapping;
    QList<QComboBox *> m_Combo1;
    ui::FlexGrid *m_MSFlexGrid1;
    QLabel *m_Label3;
    QPushButton *m_Command2;
    QPushButton *m_Command3;
};
