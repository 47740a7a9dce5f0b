/// @file ownership.hpp
/// @brief Ownership: unique and shared pointers. Smaller than those of the standard library, whose
///     header "memory" would add much to the time that cf.hpp takes to compile.
///
/// SPDX-License-Identifier: MIT
#ifndef CF_OWNERSHIP_HPP
#define CF_OWNERSHIP_HPP

#include <cstddef>
#include <utility>

namespace cf::detail {

/// A pointer that is the only owner.
template <class T, void (*Release)(T *) noexcept> class owned {
public:
  explicit owned(T *made = nullptr) noexcept : it(made) {}
  owned(owned &&other) noexcept : it(other.release()) {}
  owned &operator=(owned &&other) noexcept {
    std::swap(it, other.it);
    return *this;
  }
  ~owned() {
    if (it)
      Release(it);
  }

  T *get() const noexcept { return it; }
  T *operator->() const noexcept { return it; }
  T &operator*() const noexcept { return *it; }
  explicit operator bool() const noexcept { return it; }
  T *release() noexcept { return std::exchange(it, nullptr); }

private:
  T *it;
};

template <class T> void destroy(T *it) noexcept { delete it; }

/// The base of objects with several owners: it counts them. A copy of the object has none yet.
struct counted {
  mutable long owners = 0;
  counted() = default;
  counted(const counted &) noexcept {}
  counted &operator=(const counted &) noexcept { return *this; }
};

/// A pointer that is one of several owners. They may be in different threads.
template <class T> class shared {
public:
  shared() = default;
  explicit shared(T *made) noexcept : it(made) { take(); }
  shared(const shared &other) noexcept : it(other.it) { take(); }
  template <class U> shared(const shared<U> &other) noexcept : it(other.get()) { take(); }
  shared &operator=(shared other) noexcept {
    std::swap(it, other.it);
    return *this;
  }
  ~shared() {
    if (it && __atomic_sub_fetch(&it->owners, 1, __ATOMIC_ACQ_REL) == 0)
      delete it;
  }

  T *get() const noexcept { return it; }
  T *operator->() const noexcept { return it; }
  T &operator*() const noexcept { return *it; }
  explicit operator bool() const noexcept { return it; }

private:
  T *it = nullptr;

  void take() const noexcept {
    if (it)
      __atomic_add_fetch(&it->owners, 1, __ATOMIC_RELAXED);
  }
};

} // namespace cf::detail

#endif
