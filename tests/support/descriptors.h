// The descriptors of this process: whether one is left open.
#ifndef QORUTILS_TESTS_SUPPORT_DESCRIPTORS_H_
#define QORUTILS_TESTS_SUPPORT_DESCRIPTORS_H_

#include <fcntl.h>
#include <unistd.h>

inline int CountDescriptors() {
    int count = 0;
    for (int file = 0; file < 1024; ++file) count += fcntl(file, F_GETFD) != -1;
    return count;
}

// The one that the next file will get.
inline int NextDescriptor() {
    int const file = open("/", O_RDONLY);
    close(file);
    return file;
}

#endif  // QORUTILS_TESTS_SUPPORT_DESCRIPTORS_H_
