// scopedValue.h - a variable that has another value for as long as a scope lasts, however it ends.
#ifndef PLOTWERK_WINDOW_SCOPEDVALUE_H
#define PLOTWERK_WINDOW_SCOPEDVALUE_H

#include <utility>

namespace plotwerk {

template<class T> class ScopedValue {
  public:
    ScopedValue(T &changed, T value)
        : variable(changed), before(std::exchange(changed, std::move(value))) {}
    ~ScopedValue() { variable = std::move(before); }
    ScopedValue(const ScopedValue &) = delete;
    ScopedValue &operator=(const ScopedValue &) = delete;

  private:
    T &variable;
    T before;
};

} // namespace plotwerk

#endif
