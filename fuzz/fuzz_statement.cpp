// readStatement on any bytes, and the cell readers on every cell it finds.
// Errors come back as the table's text; nothing may throw or crash.

#include "import/StatementFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    const importer::StatementTable table = importer::readStatement(bytes);
    for (const importer::StatementLine &line : table.lines)
        for (const QString &cell : line.cells) {
            (void)importer::cellDate(cell);
            (void)importer::cellNumber(cell);
        }
    (void)importer::mappingProblem(table.columns);
    return 0;
}
