#pragma once
// The directory list of the DataSet window: the folders under the current
// path, ".." first; a double click (or Enter) opens a folder. The path is kept
// as a text of the kind the user types ("c:\ml30" or "/home/me/ml30").

#include <QListWidget>

namespace marketdata {

class DirList : public QListWidget {
    Q_OBJECT
public:
    explicit DirList(QWidget *parent = nullptr);

    const QString &path() const { return m_path; }
    // Raises the path-not-found error when the folder does not exist.
    void setPath(const QString &path);

signals:
    void pathChanged(const QString &path);

private:
    void open(QListWidgetItem *item);
    void refill();
    QChar separator() const;

    QString m_path;
};

// The drive texts offered by the drive list: "/" and the Wine drives "c:" ... .
QStringList driveTexts();

} // namespace marketdata
