#pragma once

#include <mutex>

namespace GS {

class Lock {
  public:
    void Acquire() { mutex.lock(); }
    void Release() { mutex.unlock(); }

  private:
    std::mutex mutex;
};

// Holds a lock for the length of a scope.
template <class LockType>
class Guard {
  public:
    explicit Guard(LockType& lock) : lock(lock) { lock.Acquire(); }
    ~Guard() { lock.Release(); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

  private:
    LockType& lock;
};

}  // namespace GS
