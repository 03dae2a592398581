// Long numbers as texts.
#ifndef QORUTILS_TESTS_BIGNUM_DIGIT_TEXTS_H_
#define QORUTILS_TESTS_BIGNUM_DIGIT_TEXTS_H_

#include <cstddef>
#include <string>

inline std::string Nines(std::size_t n) {
    return std::string(n, '9');
}

// Of ten.
inline std::string Power(std::size_t zeros) {
    return "1" + std::string(zeros, '0');
}

#endif  // QORUTILS_TESTS_BIGNUM_DIGIT_TEXTS_H_
