#include "Gbk.h"

#include <cerrno>
#include <iconv.h>

namespace base {

namespace {

// Converts with iconv; an invalid or incomplete sequence is replaced by
// `replacement` and the input skips one byte.
QByteArray convert(const char *to, const char *from, const QByteArray &in, const QByteArray &replacement, int skipUnit)
{
    iconv_t cd = iconv_open(to, from);
    if (cd == reinterpret_cast<iconv_t>(-1))
        return QByteArray();
    QByteArray out;
    out.reserve(in.size() * 2 + 16);
    char *src = const_cast<char *>(in.constData());
    size_t srcLeft = static_cast<size_t>(in.size());
    char buf[4096];
    while (srcLeft > 0) {
        char *dst = buf;
        size_t dstLeft = sizeof buf;
        const size_t r = iconv(cd, &src, &srcLeft, &dst, &dstLeft);
        out.append(buf, static_cast<qsizetype>(sizeof buf - dstLeft));
        if (r == static_cast<size_t>(-1)) {
            if (errno == E2BIG)
                continue;
            // EILSEQ or EINVAL: replace and skip.
            out.append(replacement);
            const size_t skip = std::min(srcLeft, static_cast<size_t>(skipUnit));
            src += skip;
            srcLeft -= skip;
            iconv(cd, nullptr, nullptr, nullptr, nullptr);
        }
    }
    char *dst = buf;
    size_t dstLeft = sizeof buf;
    iconv(cd, nullptr, nullptr, &dst, &dstLeft);
    out.append(buf, static_cast<qsizetype>(sizeof buf - dstLeft));
    iconv_close(cd);
    return out;
}

} // namespace

QString fromGbk(const QByteArray &bytes)
{
    return QString::fromUtf8(convert("UTF-8", "GB18030", bytes, QByteArray("\xEF\xBF\xBD"), 1));
}

QByteArray toGbk(const QString &text) { return convert("GB18030", "UTF-8", text.toUtf8(), QByteArray("?"), 1); }

} // namespace base
