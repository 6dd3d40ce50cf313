#pragma once

#include <functional>

namespace GS {

// Work that a thread can be given.
class Runnable {
  public:
    virtual ~Runnable() = default;
    virtual void Run() = 0;
};

class FunctionRunnable : public Runnable {
  public:
    explicit FunctionRunnable(std::function<void()> function) : function(std::move(function)) {}

    void Run() override { function(); }

  private:
    std::function<void()> function;
};

}  // namespace GS
