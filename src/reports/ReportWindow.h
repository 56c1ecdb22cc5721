#pragma once
// What the four report windows share: the user handed over by GetMame, the
// caption "user name + title" set at load, the window's own database handle
// (opened at load, closed at unload), the grid MSFlexGrid1 filled once at
// load, and optionally the menu mnufile "文件" with its entry mnudel "删除".

#include "store/Database.h"
#include "ui/Form.h"

class QAction;
class QMenu;

namespace ui {
class FlexGrid;
}

namespace reports {

// GetMame stores the user name (the upper-case account name of userid) and
// the rights text; it touches neither controls nor the database.
class ReportWindow : public ui::UserForm {
    Q_OBJECT
public:
    ui::FlexGrid *grid() const { return m_MSFlexGrid1; }

protected:
    // Where the window carries mnufile: not at all, in its menu bar (the
    // entry does nothing), or as the grid's right-button pop-up whose entry
    // deletes a record.
    enum class FileMenu { None, MenuBar, PopUp };

    // `title` begins with the two blanks that follow the user name.
    ReportWindow(const QString &objectName, const QString &title, FileMenu fileMenu, QWidget *parent);

    // Rebuilds the grid; runs once at load, after the database is open.
    virtual void FillGrid() = 0;

    void formLoad() override;
    void formUnload() override;

    store::Database m_db;
    ui::FlexGrid *m_MSFlexGrid1;
    QMenu *m_mnufile = nullptr;
    QAction *m_mnudel = nullptr;
};

} // namespace reports
