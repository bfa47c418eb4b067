#pragma once

/// Makes this process a host that is unlike our own programs, as "--host=" asks for, by words
/// separated by commas:
///
///     runtime    the compiler's shared run-time is in the process before the library
///     mta        the user-interface thread lives in the multithreaded apartment
///     fpu        the thread's floating-point exceptions are unmasked
///     932, utf8  the process's code page is this one
///
/// Another code page comes from the program's manifest (host_utf8.exe) or from the locale that Wine
/// is started with, the older common controls from having no manifest (host_bare.exe).
///
/// False, and says so, for a word it does not know or cannot fulfil.
bool BecomeHost(int argc, char** argv);
