#pragma once
// A copyable call wrapper like std::function that keeps any callable of up to `Capacity`
// bytes in place. libstdc++'s std::function keeps only trivially copyable callables of two
// pointers in place, so a lambda holding a shared_ptr costs an allocation and a free each
// time one is made; callbacks made once per request are kept here instead.
#include <cstddef>
#include <functional>
#include <new>
#include <type_traits>
#include <utility>

namespace qmv {

namespace inline_function_detail {
template <typename T>
inline constexpr bool kIsStdFunction = false;
template <typename Sig>
inline constexpr bool kIsStdFunction<std::function<Sig>> = true;
}  // namespace inline_function_detail

template <typename Signature, std::size_t Capacity = 4 * sizeof(void*)>
class InlineFunction;

template <typename R, typename... Args, std::size_t Capacity>
class InlineFunction<R(Args...), Capacity> {
 public:
  InlineFunction() noexcept = default;
  InlineFunction(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor): as std::function

  template <typename F, typename D = std::decay_t<F>,
            typename = std::enable_if_t<!std::is_same_v<D, InlineFunction> && std::is_copy_constructible_v<D> &&
                                        std::is_invocable_r_v<R, D&, Args...>>>
  InlineFunction(F&& f) {  // NOLINT(google-explicit-constructor): as std::function
    if constexpr (std::is_pointer_v<D> || std::is_member_pointer_v<D> || inline_function_detail::kIsStdFunction<D>) {
      if (!f) return;  // a null pointer or an empty function: empty, as std::function makes it
    }
    if constexpr (kInPlace<D>) {
      ::new (static_cast<void*>(storage_)) D(std::forward<F>(f));
    } else {
      *reinterpret_cast<void**>(storage_) = new D(std::forward<F>(f));
    }
    ops_ = &kOps<D>;
  }

  InlineFunction(const InlineFunction& other) {
    if (other.ops_ != nullptr) other.ops_->copy(other.storage_, storage_);
    ops_ = other.ops_;
  }
  InlineFunction(InlineFunction&& other) noexcept {
    if (other.ops_ != nullptr) other.ops_->move(other.storage_, storage_);
    ops_ = std::exchange(other.ops_, nullptr);
  }
  InlineFunction& operator=(const InlineFunction& other) {
    if (this != &other) *this = InlineFunction(other);
    return *this;
  }
  InlineFunction& operator=(InlineFunction&& other) noexcept {
    if (this != &other) {
      reset();
      if (other.ops_ != nullptr) other.ops_->move(other.storage_, storage_);
      ops_ = std::exchange(other.ops_, nullptr);
    }
    return *this;
  }
  InlineFunction& operator=(std::nullptr_t) noexcept {
    reset();
    return *this;
  }
  ~InlineFunction() { reset(); }

  explicit operator bool() const noexcept { return ops_ != nullptr; }
  friend bool operator==(const InlineFunction& f, std::nullptr_t) noexcept { return !f; }

  // Throws std::bad_function_call when empty, as std::function does.
  R operator()(Args... args) const {
    if (ops_ == nullptr) throw std::bad_function_call();
    return ops_->invoke(const_cast<unsigned char*>(storage_), std::forward<Args>(args)...);
  }

 private:

  // Moved callables stay in place only if moving them cannot throw.
  template <typename D>
  static constexpr bool kInPlace = sizeof(D) <= Capacity && alignof(D) <= alignof(std::max_align_t) &&
                                   std::is_nothrow_move_constructible_v<D>;

  struct Ops {
    R (*invoke)(unsigned char* storage, Args&&... args);
    void (*copy)(const unsigned char* from, unsigned char* to);
    void (*move)(unsigned char* from, unsigned char* to) noexcept;  // leaves `from` destroyed
    void (*destroy)(unsigned char* storage) noexcept;
  };

  template <typename D>
  static D& target(unsigned char* storage) {
    if constexpr (kInPlace<D>) {
      return *std::launder(reinterpret_cast<D*>(storage));
    } else {
      return *static_cast<D*>(*reinterpret_cast<void**>(storage));
    }
  }

  template <typename D>
  static constexpr Ops kOps{
      [](unsigned char* storage, Args&&... args) -> R {
        return std::invoke(target<D>(storage), std::forward<Args>(args)...);
      },
      [](const unsigned char* from, unsigned char* to) {
        const D& source = target<D>(const_cast<unsigned char*>(from));
        if constexpr (kInPlace<D>) {
          ::new (static_cast<void*>(to)) D(source);
        } else {
          *reinterpret_cast<void**>(to) = new D(source);
        }
      },
      [](unsigned char* from, unsigned char* to) noexcept {
        if constexpr (kInPlace<D>) {
          D& source = target<D>(from);
          ::new (static_cast<void*>(to)) D(std::move(source));
          source.~D();
        } else {
          *reinterpret_cast<void**>(to) = *reinterpret_cast<void**>(from);
        }
      },
      [](unsigned char* storage) noexcept {
        if constexpr (kInPlace<D>) {
          target<D>(storage).~D();
        } else {
          delete &target<D>(storage);
        }
      },
  };

  void reset() noexcept {
    if (ops_ != nullptr) std::exchange(ops_, nullptr)->destroy(storage_);
  }

  alignas(std::max_align_t) unsigned char storage_[Capacity < sizeof(void*) ? sizeof(void*) : Capacity];
  const Ops* ops_ = nullptr;
};

}  // namespace qmv
