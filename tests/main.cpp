#include <clocale>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // The suite is run under several values of LC_ALL; without this call all would mean "C".
    std::setlocale(LC_ALL, "");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
