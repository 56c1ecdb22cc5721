#include "PowerLossVfs.h"

#include <sqlcipher/sqlite3.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace powerloss {

namespace {

constexpr int64_t kSector = 512;

struct Write {
    int64_t offset;
    std::string before, after;
};

struct FileState {
    int64_t syncedSize = 0;
    std::vector<Write> pending; // since the last sync, oldest first
    bool journal = false;
};

struct Layer {
    sqlite3_vfs vfs{};
    sqlite3_vfs *real = nullptr;
    sqlite3_io_methods methods{};
    std::map<std::string, FileState> files;
    std::map<std::string, std::string> ghosts; // deleted, the deletion not yet durable
    std::string database;                      // the first main database opened
    int64_t operations = 0, crashAt = 0;
    std::mt19937 rng;
};

Layer &layer() { static Layer l; return l; }

// The engine's handle: this layer's part, then the wrapped VFS's file.
struct File {
    sqlite3_file base;
    sqlite3_file *real;
    const char *path; // valid until xClose; null for temporary files
    bool syncsFolder; // a new journal: its first sync also syncs its folder
};

// Passes a call on to the wrapped file.
template <auto Method, typename... A>
int forward(sqlite3_file *f, A... a)
{
    sqlite3_file *real = reinterpret_cast<File *>(f)->real;
    return (real->pMethods->*Method)(real, a...);
}

std::string folderOf(const std::string &path) { return path.substr(0, path.rfind('/') + 1); }

void forgetGhostsIn(const std::string &folder)
{
    std::erase_if(layer().ghosts, [&](const auto &g) { return folderOf(g.first) == folder; });
}

// What the disk holds of `path` after the power failed.
void settle(const std::string &path, const FileState &s, std::mt19937 &rng)
{
    const int fd = ::open(path.c_str(), O_RDWR);
    if (fd < 0)
        return;
    const auto put = [fd](const std::string &bytes, size_t from, size_t n, int64_t at) {
        if (::pwrite(fd, bytes.data() + from, n, at) != ssize_t(n))
            std::perror("power-loss layer");
    };
    for (auto w = s.pending.rbegin(); w != s.pending.rend(); ++w)
        put(w->before, 0, w->before.size(), w->offset);
    for (const Write &w : s.pending) {
        const unsigned fate = rng() % 3; // 0 lost, 1 whole, 2 some sectors
        const int64_t end = w.offset + int64_t(w.after.size());
        for (int64_t at = w.offset; at < end;) {
            const int64_t next = std::min(end, (at / kSector + 1) * kSector);
            if (fate == 1 || (fate == 2 && rng() % 2))
                put(w.after, size_t(at - w.offset), size_t(next - at), at);
            at = next;
        }
    }
    if (!s.pending.empty() && ::lseek(fd, 0, SEEK_END) > s.syncedSize && rng() % 2 && ::ftruncate(fd, s.syncedSize))
        std::perror("power-loss layer");
    ::close(fd);
}

[[noreturn]] void powerFails(const char *where, bool midSector)
{
    Layer &l = layer();
    for (const auto &[path, state] : l.files)
        settle(path, state, l.rng);
    for (const auto &[path, bytes] : l.ghosts)
        if (l.rng() % 2)
            std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    std::printf("P %s%s\n", where, midSector ? " mid-sector" : "");
    std::fflush(stdout);
    ::_exit(kPowerLossExit);
}

void tick(const char *path, const char *what, bool midSector = false)
{
    Layer &l = layer();
    if (++l.operations != l.crashAt)
        return;
    const std::string name = path ? path : "";
    const bool ours = name == l.database || name == l.database + "-journal";
    powerFails(ours ? what : "backup", midSector);
}

int pathWrite(sqlite3_file *file, const void *data, int amount, sqlite3_int64 offset)
{
    File *f = reinterpret_cast<File *>(file);
    if (!f->path)
        return f->real->pMethods->xWrite(f->real, data, amount, offset);
    FileState &s = layer().files[f->path];
    Write w{offset, std::string(size_t(amount), '\0'), std::string(static_cast<const char *>(data), size_t(amount))};
    f->real->pMethods->xRead(f->real, w.before.data(), amount, offset); // zero-filled past the end
    const int rc = f->real->pMethods->xWrite(f->real, data, amount, offset);
    if (rc != SQLITE_OK)
        return rc;
    s.pending.push_back(std::move(w));
    tick(f->path, s.journal ? "journal" : "database",
         offset % kSector != 0 || (offset + amount) % kSector != 0);
    return rc;
}

void resetToSynced(sqlite3_file *real, FileState &s)
{
    sqlite3_int64 size = 0;
    real->pMethods->xFileSize(real, &size);
    s.pending.clear();
    s.syncedSize = size;
}

// The disk that counts is the simulated one: the real syncs are left out,
// which keeps a test of hundreds of writers quick.
int pathSync(sqlite3_file *file, int flags)
{
    File *f = reinterpret_cast<File *>(file);
    if (!f->path)
        return f->real->pMethods->xSync(f->real, flags);
    tick(f->path, "sync");
    resetToSynced(f->real, layer().files[f->path]);
    if (f->syncsFolder)
        forgetGhostsIn(folderOf(f->path));
    f->syncsFolder = false;
    return SQLITE_OK;
}

int pathTruncate(sqlite3_file *file, sqlite3_int64 size)
{
    File *f = reinterpret_cast<File *>(file);
    const int rc = f->real->pMethods->xTruncate(f->real, size);
    if (rc == SQLITE_OK && f->path)
        resetToSynced(f->real, layer().files[f->path]);
    return rc;
}

int pathOpen(sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *outFlags)
{
    Layer &l = layer();
    File *f = reinterpret_cast<File *>(file);
    f->real = reinterpret_cast<sqlite3_file *>(f + 1);
    const int rc = l.real->xOpen(l.real, name, f->real, flags, outFlags);
    if (rc != SQLITE_OK) {
        file->pMethods = nullptr;
        return rc;
    }
    file->pMethods = &l.methods;
    f->path = name;
    f->syncsFolder = name && (flags & SQLITE_OPEN_CREATE) && (flags & SQLITE_OPEN_MAIN_JOURNAL);
    if (name) {
        const auto [it, fresh] = l.files.try_emplace(name);
        if (fresh) {
            resetToSynced(f->real, it->second);
            it->second.journal = flags & SQLITE_OPEN_MAIN_JOURNAL;
        }
        if (l.database.empty() && (flags & SQLITE_OPEN_MAIN_DB))
            l.database = name;
    }
    return rc;
}

int pathDelete(sqlite3_vfs *, const char *name, int syncFolder)
{
    Layer &l = layer();
    const auto it = l.files.find(name);
    if (it != l.files.end()) {
        if (!syncFolder) {
            // The contents as of the last sync: later writes undone.
            std::ifstream in(name, std::ios::binary);
            std::string bytes{std::istreambuf_iterator<char>(in), {}};
            for (auto w = it->second.pending.rbegin(); w != it->second.pending.rend(); ++w)
                bytes.replace(size_t(w->offset), w->before.size(), w->before);
            bytes.resize(size_t(it->second.syncedSize));
            l.ghosts[name] = std::move(bytes);
        }
        l.files.erase(it);
    }
    const int rc = l.real->xDelete(l.real, name, 0);
    if (syncFolder)
        forgetGhostsIn(folderOf(name));
    tick(name, "commit");
    return rc;
}

} // namespace

void install(int64_t crashAt, uint32_t seed)
{
    Layer &l = layer();
    l.real = sqlite3_vfs_find(nullptr);
    l.crashAt = crashAt;
    l.rng.seed(seed);
    l.vfs = *l.real;
    l.vfs.zName = "powerloss";
    l.vfs.pNext = nullptr;
    l.vfs.szOsFile = int(sizeof(File)) + l.real->szOsFile;
    l.vfs.xOpen = pathOpen;
    l.vfs.xDelete = pathDelete;

    // Version 1 methods: no shared memory and no memory mapping, so every
    // change to a file goes through xWrite.
    sqlite3_io_methods &m = l.methods;
    m.iVersion = 1;
    m.xClose = forward<&sqlite3_io_methods::xClose>;
    m.xRead = forward<&sqlite3_io_methods::xRead>;
    m.xWrite = pathWrite;
    m.xTruncate = pathTruncate;
    m.xSync = pathSync;
    m.xFileSize = forward<&sqlite3_io_methods::xFileSize>;
    m.xLock = forward<&sqlite3_io_methods::xLock>;
    m.xUnlock = forward<&sqlite3_io_methods::xUnlock>;
    m.xCheckReservedLock = forward<&sqlite3_io_methods::xCheckReservedLock>;
    m.xFileControl = forward<&sqlite3_io_methods::xFileControl>;
    m.xSectorSize = forward<&sqlite3_io_methods::xSectorSize>;
    m.xDeviceCharacteristics = forward<&sqlite3_io_methods::xDeviceCharacteristics>;
    sqlite3_vfs_register(&l.vfs, 1);
}

int64_t operations() { return layer().operations; }

} // namespace powerloss
