#pragma once

/// Has the compiler's run-time allocate, while there is memory, what its first exception needs in
/// the process and in this thread: out of memory it would fail to throw for want of memory, again
/// and again until the stack is used up, or end the process. As the library is loaded, and by each
/// thread before it runs what may throw.
void PrepareToThrow() noexcept;
