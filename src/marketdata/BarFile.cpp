#include "BarFile.h"
#include "StockBar.h"

#include "base/Numbers.h"
#include "base/Paths.h"
#include "base/RuntimeError.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <type_traits>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace marketdata {

namespace {

// Files up to this size are read in one call into a reused buffer; larger
// ones (a whole market's day.dat) are mapped.
constexpr qint64 kReadLimit = 4 * 1024 * 1024;

// Buffers of the files open on this thread: a file borrows one and gives it
// back when it closes, so that reading a file allocates nothing once warm.
std::vector<std::unique_ptr<std::vector<char>>> &bufferPool()
{
    thread_local std::vector<std::unique_ptr<std::vector<char>>> pool;
    return pool;
}

// Opens the file a path text names, through the resolver (which tries the
// path as written first, then letter case and the Wine prefix). Without
// blocking: a named pipe or a device in a file's place would otherwise wait
// for a writer; such a thing is then no file (below).
int openResolved(const QString &text)
{
    return ::open(QFile::encodeName(base::resolvePath(text)).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
}

[[noreturn]] void raiseAccessError() { throw base::RuntimeError(75, QStringLiteral("路径/文件访问错误")); }

} // namespace

BarFile::~BarFile()
{
    if (m_map)
        ::munmap(m_map, static_cast<size_t>(m_size));
    if (m_buffer)
        bufferPool().emplace_back(m_buffer);
}

bool BarFile::open(const QString &text)
{
    if (text.isEmpty())
        return false;
    const int fd = openResolved(text);
    if (fd < 0) {
        if (errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG || errno == ELOOP)
            return false;
        raiseAccessError();
    }
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return false; // a folder, pipe or device of that name is no file
    }
    m_size = st.st_size;
    if (m_size > kReadLimit) {
        void *p = ::mmap(nullptr, static_cast<size_t>(m_size), PROT_READ, MAP_PRIVATE, fd, 0);
        ::close(fd);
        if (p == MAP_FAILED)
            raiseAccessError();
        m_map = p;
        m_data = static_cast<const char *>(p);
        return true;
    }
    auto &pool = bufferPool();
    if (pool.empty()) {
        m_buffer = new std::vector<char>;
    } else {
        m_buffer = pool.back().release();
        pool.pop_back();
    }
    m_buffer->resize(static_cast<size_t>(m_size));
    qint64 done = 0;
    while (done < m_size) {
        const ssize_t got = ::read(fd, m_buffer->data() + done, static_cast<size_t>(m_size - done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break; // the file shrank while being read: the rest reads as zeros
        done += got;
    }
    ::close(fd);
    m_size = done;
    m_data = m_buffer->data();
    return true;
}

int16_t BarFile::recordCount(int recordSize) const { return base::toInt16(static_cast<double>(m_size) / recordSize); }

void raiseBadRecordNumber() { throw base::RuntimeError(63, QStringLiteral("记录号错误")); }

void BarArray::clear()
{
    static_assert(std::is_trivially_copyable_v<StockBar>);
    if (m_touched > 0)
        std::memset(static_cast<void *>(m_bars.data()), 0, static_cast<std::size_t>(m_touched) * sizeof(StockBar));
    m_touched = 0;
}

void BarArray::grow(std::size_t k)
{
    // Doubling keeps a reader that fills 1, 2, 3 … from reallocating per bar.
    const std::size_t want = std::max<std::size_t>({k + 1, m_bars.size() * 2, 256});
    m_bars.resize(std::min<std::size_t>(want, kBarArrayLast));
}

void BarArray::raiseSubscript() { base::raiseSubscript(); }

} // namespace marketdata
