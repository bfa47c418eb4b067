#pragma once

/// Has the compiler's run-time give back what it took for this load of the library, once all else
/// has run. As the library is unloaded, not when the process ends: it all goes with the process.
void GiveBackRuntimeLeftovers();
