#include "CipherKey.h"

#include <QCryptographicHash>
#include <QHash>

#include <array>
#include <cstring>

namespace store {

namespace {

// SHA-1 (FIPS 180-4) with the state exposed, so that HMAC can start from the
// states after its two pad blocks instead of hashing them again for each of
// the many iterations.
constexpr int kBlock = 64;
constexpr int kDigest = 20;

using State = std::array<quint32, 5>;
constexpr State kInitial = {0x67452301u, 0xEFCDAB89u, 0x98BADCFEu, 0x10325476u, 0xC3D2E1F0u};

inline quint32 rol(quint32 v, int n)
{
    return (v << n) | (v >> (32 - n));
}

void compress(State &h, const uchar *block)
{
    quint32 w[80];
    for (int i = 0; i < 16; ++i)
        w[i] = quint32(block[4 * i]) << 24 | quint32(block[4 * i + 1]) << 16 | quint32(block[4 * i + 2]) << 8
            | quint32(block[4 * i + 3]);
    for (int i = 16; i < 80; ++i)
        w[i] = rol(w[i - 3] ^ w[i - 8] ^ w[i - 14] ^ w[i - 16], 1);
    quint32 a = h[0], b = h[1], c = h[2], d = h[3], e = h[4];
    for (int i = 0; i < 80; ++i) {
        quint32 f, k;
        if (i < 20) {
            f = (b & c) | (~b & d);
            k = 0x5A827999u;
        } else if (i < 40) {
            f = b ^ c ^ d;
            k = 0x6ED9EBA1u;
        } else if (i < 60) {
            f = (b & c) | (b & d) | (c & d);
            k = 0x8F1BBCDCu;
        } else {
            f = b ^ c ^ d;
            k = 0xCA62C1D6u;
        }
        const quint32 t = rol(a, 5) + f + e + k + w[i];
        e = d;
        d = c;
        c = rol(b, 30);
        b = a;
        a = t;
    }
    h[0] += a;
    h[1] += b;
    h[2] += c;
    h[3] += d;
    h[4] += e;
}

// Finishes a hash that has consumed `done` bytes (whole blocks) into `start`
// with the remaining message `msg`, writing the digest to `out`.
void finish(const State &start, quint64 done, const uchar *msg, size_t len, uchar *out)
{
    State h = start;
    size_t i = 0;
    for (; len - i >= size_t(kBlock); i += kBlock)
        compress(h, msg + i);
    uchar tail[2 * kBlock] = {};
    const size_t rest = len - i;
    std::memcpy(tail, msg + i, rest);
    tail[rest] = 0x80;
    const size_t blocks = rest + 9 <= size_t(kBlock) ? 1 : 2;
    const quint64 bits = (done + len) * 8;
    for (int k = 0; k < 8; ++k)
        tail[blocks * kBlock - 1 - size_t(k)] = uchar(bits >> (8 * k));
    compress(h, tail);
    if (blocks == 2)
        compress(h, tail + kBlock);
    for (int k = 0; k < 5; ++k) {
        out[4 * k] = uchar(h[k] >> 24);
        out[4 * k + 1] = uchar(h[k] >> 16);
        out[4 * k + 2] = uchar(h[k] >> 8);
        out[4 * k + 3] = uchar(h[k]);
    }
}

class HmacSha1 {
public:
    explicit HmacSha1(QByteArray key)
    {
        if (key.size() > kBlock)
            key = QCryptographicHash::hash(key, QCryptographicHash::Sha1);
        key.resize(kBlock, '\0');
        uchar ipad[kBlock], opad[kBlock];
        for (int i = 0; i < kBlock; ++i) {
            ipad[i] = uchar(key[i] ^ 0x36);
            opad[i] = uchar(key[i] ^ 0x5c);
        }
        m_inner = kInitial;
        compress(m_inner, ipad);
        m_outer = kInitial;
        compress(m_outer, opad);
    }

    void mac(const uchar *message, size_t len, uchar *out) const
    {
        uchar inner[kDigest];
        finish(m_inner, kBlock, message, len, inner);
        finish(m_outer, kBlock, inner, kDigest, out);
    }

private:
    State m_inner{};
    State m_outer{};
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
    const HmacSha1 hmac(password);
    QByteArray out;
    QByteArray first = salt + QByteArray(4, '\0');
    for (quint32 block = 1; out.size() < length; ++block) {
        const qsizetype n = salt.size();
        first[n] = char(block >> 24);
        first[n + 1] = char(block >> 16);
        first[n + 2] = char(block >> 8);
        first[n + 3] = char(block);
        uchar u[kDigest], t[kDigest];
        hmac.mac(reinterpret_cast<const uchar *>(first.constData()), size_t(first.size()), u);
        std::memcpy(t, u, kDigest);
        for (int i = 1; i < iterations; ++i) {
            hmac.mac(u, kDigest, u);
            for (int k = 0; k < kDigest; ++k)
                t[k] ^= u[k];
        }
        out.append(reinterpret_cast<const char *>(t), kDigest);
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
