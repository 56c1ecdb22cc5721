#pragma once
// Helpers shared by the store tests.

#include "support/Helpers.h"
#include "support/Journal.h"

#include "store/Database.h"

// The single value of a one-row query.
inline QVariant scalar(store::Database &db, const QString &sql)
{
    store::Recordset rs = db.openRecordset(sql);
    return rs.field(0);
}
