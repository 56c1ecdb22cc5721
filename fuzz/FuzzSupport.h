#pragma once
// Shared pieces of the fuzz targets: a private folder per process, where the
// input bytes are written as the file a reader looks for.

#include <QString>

#include <cstddef>
#include <cstdint>

namespace fuzz {

// The folder (created once per process); it is also the program folder.
const QString &folder();

// Writes bytes to folder()/relative, creating the sub-folders.
void writeFile(const QString &relative, const uint8_t *data, size_t size);

// Splits the input: the first byte picks options, the rest is the file.
struct Input {
    uint8_t selector = 0;
    const uint8_t *data = nullptr;
    size_t size = 0;
};
Input split(const uint8_t *data, size_t size);

} // namespace fuzz
