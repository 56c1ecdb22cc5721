// tessaly-makedb <path>: makes the journal file delivered with the program
// (the four tables, the administrator account and one fee row).

#include "base/RuntimeError.h"
#include "store/Schema.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 2) {
        std::fprintf(stderr, "usage: tessaly-makedb <path of user2.mdb>\n");
        return 2;
    }
    try {
        store::createJournal(args.at(1));
    } catch (const base::RuntimeError &e) {
        std::fprintf(stderr, "tessaly-makedb: %s\n", qPrintable(e.description()));
        return 1;
    }
    return 0;
}
