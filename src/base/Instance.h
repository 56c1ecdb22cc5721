#pragma once
// The previous-instance indication: whether another process runs the program
// of the same program folder. The first call takes a lock that this process
// keeps until it ends; the operating system releases it however the process
// ends, so a crashed instance never blocks the next start.

namespace base {

bool previousInstance();

} // namespace base
