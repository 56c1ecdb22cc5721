#include "CipherKey.h"

#include <QCryptographicHash>
#include <QHash>

#include <array>
#include <cstring>

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#include <cpuid.h>
#include <immintrin.h>
#endif

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

void compressPortable(State &h, const uchar *block)
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

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#define TESSALY_SHA_NI 1

// Four rounds of the compression with the processor's SHA instructions
// (round function F); w[g] is made from the block or from earlier words.
template <int F>
__attribute__((target("sha,sse4.1,ssse3"))) inline void shaGroup(int g, const uchar *block, __m128i *w,
                                                                 __m128i &abcd, __m128i &before, __m128i e0)
{
    // Big-endian words, the first in the highest lane.
    const __m128i reverse = _mm_set_epi64x(0x0001020304050607LL, 0x08090a0b0c0d0e0fLL);
    if (g < 4)
        w[g] = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i *>(block + 16 * g)), reverse);
    else
        w[g] = _mm_sha1msg2_epu32(_mm_xor_si128(_mm_sha1msg1_epu32(w[g - 4], w[g - 3]), w[g - 2]), w[g - 1]);
    const __m128i e = g == 0 ? _mm_add_epi32(e0, w[0]) : _mm_sha1nexte_epu32(before, w[g]);
    before = abcd;
    abcd = _mm_sha1rnds4_epu32(abcd, e, F);
}

// The compression with the SHA instructions: the key of a journal takes a
// quarter of a million compressions, most of what a start-up does before its
// first window.
__attribute__((target("sha,sse4.1,ssse3"))) void compressShaNi(State &h, const uchar *block)
{
    // A in the highest lane, D in the lowest; E alone in the highest lane.
    __m128i abcd = _mm_shuffle_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i *>(h.data())), 0x1B);
    const __m128i e0 = _mm_set_epi32(int(h[4]), 0, 0, 0);
    const __m128i abcdStart = abcd;
    __m128i w[20];
    __m128i before = abcd; // the state before the latest group of four rounds
    for (int g = 0; g < 5; ++g)
        shaGroup<0>(g, block, w, abcd, before, e0);
    for (int g = 5; g < 10; ++g)
        shaGroup<1>(g, block, w, abcd, before, e0);
    for (int g = 10; g < 15; ++g)
        shaGroup<2>(g, block, w, abcd, before, e0);
    for (int g = 15; g < 20; ++g)
        shaGroup<3>(g, block, w, abcd, before, e0);
    const __m128i e = _mm_sha1nexte_epu32(before, e0);
    abcd = _mm_shuffle_epi32(_mm_add_epi32(abcd, abcdStart), 0x1B);
    _mm_storeu_si128(reinterpret_cast<__m128i *>(h.data()), abcd);
    h[4] = quint32(_mm_extract_epi32(e, 3));
}

bool hasShaNi()
{
    static const bool yes = [] {
        unsigned a = 0, b = 0, c = 0, d = 0;
        return __get_cpuid_count(7, 0, &a, &b, &c, &d) && (b & (1u << 29)) != 0;
    }();
    return yes;
}
#endif

void compress(State &h, const uchar *block)
{
#ifdef TESSALY_SHA_NI
    if (hasShaNi())
        return compressShaNi(h, block);
#endif
    compressPortable(h, block);
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
