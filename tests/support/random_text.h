// Random texts over small alphabets: the ones that patterns almost match. The same on every
// machine.
#ifndef QORUTILS_TESTS_SUPPORT_RANDOM_TEXT_H_
#define QORUTILS_TESTS_SUPPORT_RANDOM_TEXT_H_

#include <cstddef>
#include <random>
#include <string>

class RandomText {
  public:
    explicit RandomText(unsigned seed) : engine_(seed) {}

    int Below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }

    // `length` characters of `alphabet`, which may hold zeros.
    template <typename T>
    std::basic_string<T> Of(std::basic_string<T> const& alphabet, int length) {
        std::basic_string<T> text;
        for (int i = 0; i < length; ++i)
            text += alphabet[static_cast<std::size_t>(Below(static_cast<int>(alphabet.size())))];
        return text;
    }

  private:
    std::mt19937 engine_;
};

#endif  // QORUTILS_TESTS_SUPPORT_RANDOM_TEXT_H_
