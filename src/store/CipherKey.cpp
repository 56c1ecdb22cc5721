#include "CipherKey.h"

#include <QCryptographicHash>
#include <QHash>

namespace store {

namespace {

constexpr int kBlock = 64; // SHA-1 block size

class HmacSha1 {
public:
    explicit HmacSha1(QByteArray key)
    {
        if (key.size() > kBlock)
            key = QCryptographicHash::hash(key, QCryptographicHash::Sha1);
        key.resize(kBlock, '\0');
        m_ipad = key;
        m_opad = key;
        for (int i = 0; i < kBlock; ++i) {
            m_ipad[i] = char(key[i] ^ 0x36);
            m_opad[i] = char(key[i] ^ 0x5c);
        }
    }

    QByteArray mac(QByteArrayView message)
    {
        m_inner.reset();
        m_inner.addData(m_ipad);
        m_inner.addData(message);
        m_outer.reset();
        m_outer.addData(m_opad);
        m_outer.addData(m_inner.resultView());
        return m_outer.result();
    }

private:
    QByteArray m_ipad, m_opad;
    QCryptographicHash m_inner{QCryptographicHash::Sha1};
    QCryptographicHash m_outer{QCryptographicHash::Sha1};
};

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
    HmacSha1 hmac(password);
    QByteArray out;
    for (quint32 block = 1; out.size() < length; ++block) {
        QByteArray first = salt;
        first.append(char(block >> 24)).append(char(block >> 16)).append(char(block >> 8)).append(char(block));
        QByteArray u = hmac.mac(first);
        QByteArray t = u;
        for (int i = 1; i < iterations; ++i) {
            u = hmac.mac(u);
            for (int k = 0; k < t.size(); ++k)
                t[k] = char(t[k] ^ u[k]);
        }
        out += t;
    }
    out.truncate(length);
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

void forgetRawKey(const QString &password, const QByteArray &salt)
{
    keyCache().remove(cacheKey(password, salt));
}

} // namespace store
