#include "CipherKey.h"

#include "base/RuntimeError.h"

#include <QCryptographicHash>
#include <QHash>

#include <openssl/evp.h>

namespace store {

namespace {

QHash<QByteArray, QByteArray> &keyCache()
{
    static QHash<QByteArray, QByteArray> cache;
    return cache;
}

QByteArray cacheKey(const QString &password, const QByteArray &salt)
{
    // The password is hashed so that the cache never holds it in clear.
    QCryptographicHash h(QCryptographicHash::Sha256);
    h.addData(password.toUtf8());
    h.addData(QByteArrayView("\0", 1));
    h.addData(salt);
    return h.result();
}

} // namespace

QByteArray pbkdf2Sha1(const QByteArray &password, const QByteArray &salt, int iterations, int length)
{
    // libcrypto is the library the engine itself derives keys with.
    QByteArray out(length, '\0');
    if (PKCS5_PBKDF2_HMAC_SHA1(password.constData(), int(password.size()),
                               reinterpret_cast<const unsigned char *>(salt.constData()), int(salt.size()), iterations,
                               length, reinterpret_cast<unsigned char *>(out.data())) != 1)
        throw base::RuntimeError(7, QStringLiteral("内存不足"));
    return out;
}

QByteArray rawKeyText(const QString &password, const QByteArray &salt)
{
    const QByteArray id = cacheKey(password, salt);
    auto it = keyCache().constFind(id);
    if (it != keyCache().constEnd())
        return it.value();
    const QByteArray key = pbkdf2Sha1(password.toUtf8(), salt, kKdfIterations, 32);
    const QByteArray text = "x'" + key.toHex() + "'";
    keyCache().insert(id, text);
    return text;
}

void forgetRawKey(const QString &password, const QByteArray &salt) { keyCache().remove(cacheKey(password, salt)); }

} // namespace store
