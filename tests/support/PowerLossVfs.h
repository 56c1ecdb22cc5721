#pragma once
// A file layer for the engine that simulates a power loss, for tests run in a
// child process. It wraps the default VFS and becomes the default itself, so
// that the program's own code opens the journal through it unchanged; being
// below the engine's pager it sees the pages already encrypted.
//
// Every write goes to the disk at once, but what was written since a file's
// last sync is remembered with the bytes it replaced. At the chosen write,
// sync or delete the power fails: each unsynced write is undone, kept, or
// kept in some of its 512-byte sectors only, chosen independently, so later
// writes may survive where earlier ones did not; a file that grew may fall
// back to its synced size; a file deleted without a directory sync may come
// back with its synced contents. Then the process ends at once with
// kPowerLossExit after printing "P <where>[ mid-sector]" on stdout, where
// <where> is backup (any file but the first database opened and its journal),
// journal (a journal write), database (a database write: the journal is
// synced by then), sync, or commit (a journal's deletion); mid-sector marks
// a write that does not start and end on a sector boundary.
//
// A truncation is taken to reach the disk at once, with the writes before it.

#include <cstdint>

namespace powerloss {

constexpr int kPowerLossExit = 77;

// Installs the layer as the default VFS. The power fails at operation
// `crashAt` (writes, syncs and deletes counted from 1; 0 never); `seed`
// drives the choices of what reaches the disk.
void install(int64_t crashAt, uint32_t seed);

// Writes, syncs and deletes seen so far.
int64_t operations();

} // namespace powerloss
