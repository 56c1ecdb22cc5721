#pragma once
// The market-data settings window "数据路径": which package's data to use and
// where it lies, kept in dateset.dat in the program folder.
//
// GetDateSet may be called on an instance that was never shown (the main
// window does so at its own load): it loads the window first.

#include "ui/Form.h"

#include <QString>

#include <cstdint>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace marketdata {

class DirList;

// One data source of the list, in list order.
struct DataSource {
    const char *listText;
    const char *defaultDir;
    const char *shanghaiSubPath; // null: the Shanghai path is the directory itself
    const char *shenzhenSubPath;
    const char *formatHint; // null: the hint is left as it stands
};
constexpr int kDataSourceCount = 8;
extern const DataSource kDataSources[kDataSourceCount];

class DataSet : public ui::Form {
    Q_OBJECT
public:
    explicit DataSet(QWidget *parent = nullptr);

    // Loads dateset.dat into the window and into DataPath/DataFormat.
    void GetDateSet();

protected:
    void formLoad() override;

private:
    void readDateSet();
    void SaveDateSet();
    void selectSource(int16_t index);
    void onCombo1Click(int index);
    void onText1Change();
    void onCommand1Click();
    void onDir1Change();
    void onDrive1Change();

    QGroupBox *m_Frame1;
    QLabel *m_Label1, *m_Label2, *m_Label3, *m_Label4, *m_Label5;
    QComboBox *m_Combo1;
    QLineEdit *m_Text1, *m_Text2, *m_Text3;
    QComboBox *m_Drive1;
    DirList *m_Dir1;
    QPushButton *m_Command1, *m_Command2;
};

} // namespace marketdata
