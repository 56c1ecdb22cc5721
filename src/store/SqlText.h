#pragma once
// The text of the statements: how a typed or stored text is pasted between
// the quotes of a statement, what the engine's dialect refuses before a
// statement is prepared, and the function that compares user names.

#include <QString>

struct sqlite3;

namespace store {

// `text` as it goes between two quotes of a statement: unescaped, as typed.
// A quote in it ends the literal early and would let the rest read as SQL;
// such a text is given one more quote when its own quotes are even, so that
// the statement always holds an odd number of quotes, an unbalanced literal
// that the dialect refuses as a syntax error before anything runs.
QString pasteText(const QString &text);

// Raises the engine's syntax error (3075) for a statement with an unbalanced
// quote, a comment or a nul character, as the engine refuses them.
void checkStatementText(const QString &sql);

// Registers casefold(text) on a connection: the text folded by the Unicode
// case rules, so that a comparison of two folded names ignores the case of
// every letter (é/É, ｗ/Ｗ), which the columns' own NOCASE does only for
// A to Z. It is used only in the program's own queries; the file's schema
// names no function or collation, so it still opens and queries in any
// SQLCipher shell.
void registerCaseFold(sqlite3 *db);

// The predicate "column equals `text`" with both sides case-folded.
QString foldedEquals(const QString &column, const QString &text);

} // namespace store
