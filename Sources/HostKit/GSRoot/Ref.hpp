#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "GSException.hpp"

namespace GS {

// Counted reference, safe to copy between threads. Using an empty one throws NullReferenceException.
template <class T>
class Ref {
  public:
    Ref() = default;
    Ref(std::nullptr_t) {}

    // Takes the object over: a plain pointer may be handed to one reference only.
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ref(U* object) : object(object) {}

    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ref(const Ref<U>& other) : object(other.object) {}

    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Ref(Ref<U>&& other) : object(std::move(other.object)) {}

    T* operator->() const { return &**this; }

    T& operator*() const {
        if (object == nullptr) throw NullReferenceException();
        return *object;
    }

    operator T*() const { return object.get(); }

    friend bool operator==(const Ref& a, const T* b) { return a.object.get() == b; }
    friend bool operator!=(const Ref& a, const T* b) { return a.object.get() != b; }
    friend bool operator==(const Ref& a, std::nullptr_t) { return a.object == nullptr; }
    friend bool operator!=(const Ref& a, std::nullptr_t) { return a.object != nullptr; }

  private:
    template <class U>
    friend class Ref;
    template <class U, class V>
    friend Ref<U> DynamicCast(const Ref<V>& reference);

    std::shared_ptr<T> object;
};

template <class T, class U>
bool operator==(const Ref<T>& a, const Ref<U>& b) {
    return static_cast<T*>(a) == static_cast<U*>(b);
}

template <class T, class U>
bool operator!=(const Ref<T>& a, const Ref<U>& b) {
    return !(a == b);
}

// The same object as a reference to a derived class. An empty reference stays empty; an object of another
// class throws ClassCastException.
template <class T, class U>
Ref<T> DynamicCast(const Ref<U>& reference) {
    Ref<T> result;
    result.object = std::dynamic_pointer_cast<T>(reference.object);
    if (result == nullptr && reference != nullptr) throw ClassCastException();
    return result;
}

}  // namespace GS
