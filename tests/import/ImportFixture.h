#pragma once
// Import tests' set-up: a fresh journal with the delivered fee values
// (minimum fee 5 yuan in both markets), recorded message boxes, and the
// statement files of tests/data/import.

#include "support/Helpers.h"

#include "import/ImportStore.h"
#include "store/FeeRates.h"

namespace importtest {

inline QString dataFile(const char *name)
{
    return QStringLiteral(TESSALY_TEST_DATA "/import/") + QString::fromUtf8(name);
}

inline const QString kUser = QStringLiteral("ALICE");

class ImportTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        const float fees[6] = {0.35f, 0.25f, 5.0f, 5.0f, 0.4f, 0.4f};
        for (int c = 1; c <= 6; ++c)
            store::setFeeValue(c, fees[c - 1]);
    }

    // The preview of a file against the journal as it is now.
    QList<importer::PreviewRow> preview(const char *file)
    {
        const importer::StatementTable table = importer::readStatementFile(dataFile(file));
        store::Database db = store::openUserDatabase();
        const importer::JournalState journal = importer::readJournalState(db, kUser);
        db.close();
        return importer::classify(table, table.columns, journal);
    }
    importer::StoreResult import(const char *file)
    {
        return importer::storeImport(preview(file), kUser, QString::fromUtf8(file));
    }

    TestFolder folder;
    QStringList messages;
    const MessageRecorder recording{messages};
};

} // namespace importtest
