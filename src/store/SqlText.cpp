#include "SqlText.h"

#include "Database.h"

#include <sqlcipher/sqlite3.h>

namespace store {

QString pasteText(const QString &text)
{
    const qsizetype quotes = text.count(u'\'');
    return quotes > 0 && quotes % 2 == 0 ? text + u'\'' : text;
}

void checkStatementText(const QString &sql)
{
    bool inText = false;
    bool refused = sql.contains(QChar(0));
    for (qsizetype i = 0; i < sql.size() && !refused; ++i) {
        const QChar c = sql[i];
        const QChar next = i + 1 < sql.size() ? sql[i + 1] : QChar();
        if (c == u'\'')
            inText = !inText; // a doubled quote leaves and re-enters at once
        else if (!inText && ((c == u'-' && next == u'-') || (c == u'/' && next == u'*')))
            refused = true;
    }
    if (refused || inText)
        throw base::RuntimeError(ErrSyntax, QStringLiteral("查询表达式 '%1' 中的语法错误 (操作符丢失)。").arg(sql));
}

namespace {
void caseFold(sqlite3_context *context, int, sqlite3_value **args)
{
    if (sqlite3_value_type(args[0]) == SQLITE_NULL) {
        sqlite3_result_null(context);
        return;
    }
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(args[0]));
    const QByteArray folded = QString::fromUtf8(text, sqlite3_value_bytes(args[0])).toCaseFolded().toUtf8();
    sqlite3_result_text(context, folded.constData(), int(folded.size()), SQLITE_TRANSIENT);
}
} // namespace

void registerCaseFold(sqlite3 *db)
{
    sqlite3_create_function_v2(db, "casefold", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, caseFold, nullptr,
                               nullptr, nullptr);
}

QString foldedEquals(const QString &column, const QString &text)
{
    return QStringLiteral("casefold(%1)=casefold('%2')").arg(column, pasteText(text));
}

} // namespace store
