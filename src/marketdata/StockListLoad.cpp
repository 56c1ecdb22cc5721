// LoadStockList: the stock list from the GpSz (Shenzhen) and GpSh (Shanghai)
// files of the program folder.

#include "ListInput.h"
#include "StockList.h"

#include "base/Gbk.h"
#include "base/Paths.h"

namespace marketdata {

namespace {

// "code name" from one record: a record of 11 characters or more carries a
// marker character before the code.
QString entryOf(const QString &record)
{
    if (record.size() < 11)
        return record.mid(0, 6) + u' ' + record.mid(6);
    return record.mid(1, 6) + u' ' + record.mid(7);
}

} // namespace

void LoadStockList()
{
    int slot = 0;
    QString item; // kept from one file to the next: a missing file re-parses the previous one
    for (const char *name : {"\\GpSz", "\\GpSh"}) {
        const QString text = base::programFolder() + QString::fromLatin1(name);
        if (base::fileExists(text)) {
            ListInput in = ListInput::fromFile(base::resolvePath(text));
            while (!in.atEnd())
                item = in.readText();
        }
        QString record;
        for (const QChar c : std::as_const(item)) {
            if (c.unicode() == 1) {
                setStockList(slot, entryOf(record));
                ++slot;
                record.clear();
            } else {
                record.append(c);
            }
        }
    }
    setStockCount(slot);
    setStockList(slot, QStringLiteral("1a0001 上证指数"));
    setStockCount(slot + 1);
    setStockList(slot + 1, QStringLiteral("1a0002 Ａ股指数"));
}

QByteArray stockListFileBytes(const QStringList &records)
{
    QString item;
    for (const QString &record : records) {
        if (record.size() >= 11)
            item += u'#';
        item += record;
        item += QChar(1);
    }
    return base::toGbk(item + QStringLiteral("\r\n"));
}

} // namespace marketdata
