#pragma once

#include <pthread.h>

/// A pointer of which each thread has its own, null at first. A thread_local of a library that is
/// loaded at run time gets its memory when a thread first touches it, and the C library ends the
/// process where there is none; this asks for none as a rule, and stays null where it cannot be
/// kept.
template <typename Object>
class PerThread {
 public:
  PerThread() noexcept : isMade(pthread_key_create(&key, nullptr) == 0) {}
  PerThread(const PerThread&) = delete;
  PerThread& operator=(const PerThread&) = delete;
  ~PerThread() {
    if (isMade) pthread_key_delete(key);
  }

  [[nodiscard]] Object* Get() const noexcept {
    return isMade ? static_cast<Object*>(pthread_getspecific(key)) : nullptr;
  }
  void Set(Object* object) noexcept {
    if (isMade) static_cast<void>(pthread_setspecific(key, object));
  }

 private:
  pthread_key_t key{};
  bool isMade;
};
