#pragma once
// Helpers shared by the store tests.

#include "support/Helpers.h"

// The single value of a one-row query.
inline QVariant scalar(store::Database &db, const QString &sql)
{
    store::Recordset rs = db.openRecordset(sql);
    return rs.field(0);
}
