#pragma once
// The file key of an SQLCipher journal: PBKDF2-HMAC-SHA1 over the password
// and the 16-byte salt that starts the file, with the engine's default
// iteration count. Deriving it is deliberately slow, so a derived key is kept
// for the life of the process, per password and salt, and later handles on
// the same file open with the raw key.

#include <QByteArray>
#include <QString>

namespace store {

// PBKDF2 with HMAC-SHA1 (RFC 2898) from libcrypto, `length` bytes of output;
// a failure of the library raises the out-of-memory error.
QByteArray pbkdf2Sha1(const QByteArray &password, const QByteArray &salt, int iterations, int length);

// The raw-key text the engine takes instead of a passphrase ("x'<64 hex>'")
// for `password` and the file salt `salt`; derived on first use and then
// served from memory.
QByteArray rawKeyText(const QString &password, const QByteArray &salt);

// Forgets a key that turned out not to open its file.
void forgetRawKey(const QString &password, const QByteArray &salt);

// Salt length at the start of every file and the engine's iteration count.
constexpr int kSaltBytes = 16;
constexpr int kKdfIterations = 64000;

} // namespace store
