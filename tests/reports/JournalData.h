#pragma once
// Rows written into the test journal through the record-set API, as the
// entry windows write them, and a few read-backs.

#include "support/Helpers.h"

class TestFolder;

namespace journal {

struct Trade {
    QString code;
    QString name;
    QDate date;
    double price = 0;
    double shares = 0;
    float rate = 0;
    bool buy = true;
    QString user = QStringLiteral("ZHANG");
    bool nameNull = false; // leave 股票名称 unassigned
};

void addTrades(std::initializer_list<Trade> trades);
void addCash(const QString &user, const QDate &date, double amount, const QString &reason, bool deposit);

// Rows of a table, optionally followed by a where clause.
int count(const QString &table);

// The program folder of a test whose ending is checked in a child process.
// The child re-runs the test from its start; it finds the parent's folder
// (already filled) in the environment instead of making and filling its own.
class SharedFolder {
public:
    SharedFolder();
    ~SharedFolder();
    bool inChild() const { return m_child; }

private:
    std::unique_ptr<TestFolder> m_folder;
    bool m_child = false;
};

} // namespace journal
