// What must hold for every input.

#ifndef QORUTILS_FUZZ_REQUIRE_H_
#define QORUTILS_FUZZ_REQUIRE_H_

#include <cstdlib>

// Ends the target when it does not: libFuzzer then keeps the input.
inline void Require(bool condition) {
    if (!condition) std::abort();
}

#endif  // QORUTILS_FUZZ_REQUIRE_H_
