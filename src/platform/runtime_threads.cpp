// The few functions of threads that the compiler's run-time asks for, over the system's own locks.
// The tool chain's library of them allocates each lock when it is first taken, frees none when the
// library is unloaded, and has the host run a handler of its own at every exception.
#include "platform/runtime_threads.h"

#include <windows.h>

#include <pthread.h>

#include <cerrno>
#include <utility>

namespace {

static_assert(sizeof(pthread_mutex_t) == sizeof(SRWLOCK) &&
              sizeof(pthread_cond_t) == sizeof(CONDITION_VARIABLE) &&
              sizeof(pthread_once_t) == sizeof(INIT_ONCE));

/// The run-time's locks begin as one of its two marks, plain and recursive; the system's as zero.
/// None of them is ever taken twice by one thread: the recursive one guards the flags of local
/// statics for moments.
template <class TLock>
TLock* Begun(intptr_t* lock) {
  auto* word = reinterpret_cast<volatile LONG*>(lock);
  if (*word == PTHREAD_MUTEX_INITIALIZER || *word == PTHREAD_RECURSIVE_MUTEX_INITIALIZER) {
    InterlockedCompareExchange(word, 0, PTHREAD_MUTEX_INITIALIZER);
    InterlockedCompareExchange(word, 0, PTHREAD_RECURSIVE_MUTEX_INITIALIZER);
  }
  return reinterpret_cast<TLock*>(lock);
}

/// The run-time has one: under it each thread keeps its exceptions. A process has at least 128 of
/// these indexes; the run-time ends one that has none left as the library is loaded.
DWORD threadsIndex = FLS_OUT_OF_INDEXES;
void (*freeThreads)(void*) = nullptr;

/// When a thread ends, and for every thread when the index is given back.
void CALLBACK ThreadEnds(void* value) {
  if (value && freeThreads) freeThreads(value);
}

}  // namespace

void FreeRuntimeThreads() {
  if (threadsIndex != FLS_OUT_OF_INDEXES) FlsFree(std::exchange(threadsIndex, FLS_OUT_OF_INDEXES));
}

extern "C" {

int pthread_once(pthread_once_t* once, void (*run)()) {
  auto* state = reinterpret_cast<INIT_ONCE*>(once);
  BOOL pending = FALSE;
  if (!InitOnceBeginInitialize(state, 0, &pending, nullptr)) return EINVAL;
  if (pending) {
    run();
    InitOnceComplete(state, 0, nullptr);
  }
  return 0;
}

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* /*attributes*/) {
  *reinterpret_cast<SRWLOCK*>(mutex) = SRWLOCK_INIT;
  return 0;
}

int pthread_mutex_destroy(pthread_mutex_t* /*mutex*/) { return 0; }

int pthread_mutex_lock(pthread_mutex_t* mutex) {
  AcquireSRWLockExclusive(Begun<SRWLOCK>(mutex));
  return 0;
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  ReleaseSRWLockExclusive(reinterpret_cast<SRWLOCK*>(mutex));
  return 0;
}

int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
  return SleepConditionVariableSRW(Begun<CONDITION_VARIABLE>(condition),
                                   reinterpret_cast<SRWLOCK*>(mutex), INFINITE, 0)
             ? 0
             : EINVAL;
}

int pthread_cond_broadcast(pthread_cond_t* condition) {
  WakeAllConditionVariable(Begun<CONDITION_VARIABLE>(condition));
  return 0;
}

int pthread_key_create(pthread_key_t* key, void (*destructor)(void*)) {
  if (threadsIndex != FLS_OUT_OF_INDEXES) return EAGAIN;
  threadsIndex = FlsAlloc(ThreadEnds);
  if (threadsIndex == FLS_OUT_OF_INDEXES) return EAGAIN;
  freeThreads = destructor;
  *key = threadsIndex;
  return 0;
}

void* pthread_getspecific(pthread_key_t key) { return FlsGetValue(key); }

int pthread_setspecific(pthread_key_t key, const void* value) {
  return FlsSetValue(key, const_cast<void*>(value)) ? 0 : ENOMEM;
}

int clock_gettime(clockid_t clock, timespec* time) {
  constexpr LONGLONG second = 1'000'000'000;
  LONGLONG ticks = 0;
  LONGLONG ticksPerSecond = 10'000'000;
  if (clock == CLOCK_MONOTONIC) {
    LARGE_INTEGER now;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&frequency);
    ticks = now.QuadPart;
    ticksPerSecond = frequency.QuadPart;
  } else {
    constexpr LONGLONG unixBegins = 116'444'736'000'000'000;
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    ticks = (LONGLONG{now.dwHighDateTime} << 32 | now.dwLowDateTime) - unixBegins;
  }
  time->tv_sec = static_cast<time_t>(ticks / ticksPerSecond);
  time->tv_nsec = static_cast<long>(ticks % ticksPerSecond * second / ticksPerSecond);
  return 0;
}
}
