#pragma once

/// Gives back what the compiler's run-time keeps for each thread that has thrown, and the index it
/// keeps it under. As the library is unloaded, after all that may throw.
void FreeRuntimeThreads();
