#pragma once

#include <cstdint>
#include <memory>
#include <utility>

/// Who keeps what others have registered, under numbers of its own.
class Registrar {
 public:
  Registrar() = default;
  Registrar(const Registrar&) = delete;
  Registrar& operator=(const Registrar&) = delete;
  virtual ~Registrar() = default;

  /// Forgets what stands under a number. Does nothing if that has gone already.
  virtual void unregister(uint64_t number) = 0;
};

/// The handle of something registered, which lasts as long as this handle. It may outlive whom it
/// was registered with, and does not notice when that has done with it: an empty handle was reset,
/// moved away or never filled. It may be reset on the threads on which one may register.
class [[nodiscard]] Registration {
 public:
  Registration() = default;
  Registration(std::weak_ptr<Registrar> registrar, uint64_t number)
      : registrar_(std::move(registrar)), number_(number) {}
  Registration(Registration&& other) noexcept
      : registrar_(std::move(other.registrar_)), number_(std::exchange(other.number_, 0)) {}
  Registration& operator=(Registration&& other) noexcept {
    // What goes may hold the owner of this handle, so nothing of it is touched behind that.
    Registration before(std::move(*this));
    registrar_ = std::move(other.registrar_);
    number_ = std::exchange(other.number_, 0);
    return *this;
  }
  ~Registration() { reset(); }

  /// Ends the registration.
  void reset() {
    const uint64_t number = std::exchange(number_, 0);
    const auto registrar = std::exchange(registrar_, {}).lock();
    if (registrar && number != 0) registrar->unregister(number);
  }

  /// Leaves the registration for good.
  void release() { number_ = 0; }

  explicit operator bool() const { return number_ != 0; }

 private:
  std::weak_ptr<Registrar> registrar_;
  uint64_t number_ = 0;  ///< 0 if there is none.
};
