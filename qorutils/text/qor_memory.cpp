#include "qorutils/text/qor_memory.h"

#include <cstdlib>

void* qor_operator_new(unsigned int size) {
    void* const block = std::malloc(size);
    if (block == nullptr) {
        static std::bad_alloc const failure;
        throw std::bad_alloc(failure);
    }
    return block;
}
