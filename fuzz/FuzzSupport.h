#pragma once
// Shared pieces of the fuzz targets: a private folder per process, where the
// input bytes are written as the file a reader looks for.

#include "base/RuntimeError.h"
#include "marketdata/Readers.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>

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

// Runs one reader call on a cleared bar array (one per process); the call
// returns the reader's result. The runtime errors the readers define are
// expected, anything else is a finding.
template <typename Call>
void readAnyBytes(Call call)
{
    static marketdata::BarArray *const bars = new marketdata::BarArray;
    bars->clear();
    try {
        const std::optional<marketdata::BarRead> read = call(*bars);
        (void)read;
    } catch (const base::RuntimeError &) {
    }
}

} // namespace fuzz
