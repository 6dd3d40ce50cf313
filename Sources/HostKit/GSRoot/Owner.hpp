#pragma once

#include <memory>

#include "GSException.hpp"

namespace GS {

// Sole owner of an object. Using an empty one throws NullReferenceException.
template <class T>
class Owner {
  public:
    Owner() = default;
    Owner(T* object) : object(object) {}

    T* operator->() const { return &**this; }

    T& operator*() const {
        if (object == nullptr) throw NullReferenceException();
        return *object;
    }

    friend bool operator==(const Owner& owner, std::nullptr_t) { return owner.object == nullptr; }
    friend bool operator!=(const Owner& owner, std::nullptr_t) { return owner.object != nullptr; }

  private:
    std::unique_ptr<T> object;
};

}  // namespace GS
