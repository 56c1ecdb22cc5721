#include "TestFolder.h"

#include "base/Paths.h"
#include "store/Schema.h"

TestFolder::TestFolder(bool withDatabase)
    : m_previous(base::programFolder())
{
    base::setProgramFolder(m_dir.path());
    if (withDatabase)
        store::createJournal(databasePath());
}

TestFolder::~TestFolder()
{
    base::setProgramFolder(m_previous);
}
