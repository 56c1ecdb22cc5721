#pragma once
// A price file read whole, with positioned reads that see zero bytes past its
// end (a truncated last record reads as if padded with zeros).

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace marketdata {

class BarFile {
public:
    BarFile() = default;
    BarFile(const BarFile &) = delete;
    BarFile &operator=(const BarFile &) = delete;
    ~BarFile();

    // Reads the file that `text` (a Windows-style path) names. Returns false,
    // reading nothing, when there is no such file.
    bool open(const QString &text);

    qint64 size() const { return m_size; }

    // Copies `len` bytes from `offset`; bytes past the end read as zero.
    void read(qint64 offset, void *dest, qint64 len) const
    {
        auto *out = static_cast<char *>(dest);
        qint64 avail = (offset >= 0 && offset < m_size) ? std::min(len, m_size - offset) : 0;
        if (avail > 0)
            std::memcpy(out, m_data + offset, static_cast<size_t>(avail));
        if (avail < len)
            std::memset(out + avail, 0, static_cast<size_t>(len - avail));
    }

    // `len` bytes at `offset`: a pointer into the file when they lie within
    // it, otherwise `scratch` filled as read() fills it.
    const unsigned char *at(qint64 offset, unsigned char *scratch, qint64 len) const
    {
        if (offset >= 0 && len <= m_size && offset <= m_size - len)
            return reinterpret_cast<const unsigned char *>(m_data + offset);
        read(offset, scratch, len);
        return scratch;
    }

    // Number of fixed-size records: length / size rounded half to even, as a
    // 16-bit count (overflow above 32767).
    int16_t recordCount(int recordSize) const;

private:
    std::vector<char> *m_buffer = nullptr; // borrowed from a per-thread pool
    void *m_map = nullptr;                 // large files are mapped instead
    const char *m_data = nullptr;
    qint64 m_size = 0;
};

inline int32_t le32(const unsigned char *p)
{
    return static_cast<int32_t>(static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
                                static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24);
}

inline uint16_t le16(const unsigned char *p) { return static_cast<uint16_t>(p[0] | p[1] << 8); }

inline float leFloat(const unsigned char *p)
{
    const uint32_t bits = static_cast<uint32_t>(le32(p));
    float f;
    std::memcpy(&f, &bits, sizeof f);
    return f;
}

// Error raised for a position before the start of a file.
[[noreturn]] void raiseBadRecordNumber();

} // namespace marketdata
