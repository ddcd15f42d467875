// Integer arithmetic in which an overflow is a programming error.
#pragma once

#include <concepts>

#include "MirethVex/Base/FatalError.hpp"

namespace mireth {

template <std::integral T>
T checkedAdd(T left, T right) {
    T result;
    if (__builtin_add_overflow(left, right, &result)) {
        fatalError("Addition results in an overflow");
    }
    return result;
}

template <std::integral T>
T checkedSubtract(T left, T right) {
    T result;
    if (__builtin_sub_overflow(left, right, &result)) {
        fatalError("Subtraction results in an overflow");
    }
    return result;
}

template <std::integral T>
T checkedMultiply(T left, T right) {
    T result;
    if (__builtin_mul_overflow(left, right, &result)) {
        fatalError("Multiplication results in an overflow");
    }
    return result;
}

/// Integer division, rounded toward zero.
template <std::signed_integral T>
T checkedDivide(T dividend, T divisor) {
    if (divisor == 0) {
        fatalError("Division by zero");
    }
    T ignored;
    if (divisor == -1 && __builtin_sub_overflow(T{0}, dividend, &ignored)) {
        fatalError("Division results in an overflow");
    }
    return static_cast<T>(dividend / divisor);
}

}  // namespace mireth
