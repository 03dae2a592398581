// The input: two texts, each ended by a line feed, then moves: a byte that chooses an operation on
// the two numbers, and one more that says by how much to shift. Texts are read in both character
// types, from memory that ends with them. All is compared with Boost's cpp_int, which holds the
// magnitude; what happens to signs is said here once more, in numbers instead of digits.

#include <qorutils/bignum/bignum.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "require.h"

namespace {

using boost::multiprecision::cpp_int;
using Number = bignum_t<255>;

constexpr int kPositive = 1;
constexpr int kNegative = 255;

cpp_int Power(unsigned int exponent) {
    return boost::multiprecision::pow(cpp_int(10), exponent);
}

cpp_int const kLeast255Digits = Power(254);
cpp_int const kLeast256Digits = Power(255);

struct Model {
    bool isNaN = true;
    cpp_int magnitude = 0;
    int sign = kPositive;

    Model() = default;
    Model(cpp_int const& value, int newSign)
        : isNaN(false), magnitude(value), sign(value == 0 ? kPositive : newSign) {
        if (Has256Digits()) sign = static_cast<int>(magnitude / kLeast256Digits);
    }
    bool Has256Digits() const { return magnitude >= kLeast256Digits; }

    // With the positive sign, which takes the place of a 256th digit.
    cpp_int Positive() const {
        return Has256Digits() ? kLeast256Digits + magnitude % kLeast256Digits : magnitude;
    }
};

// A number and its model. A sign that takes the place of a digit, and is none, ends the run.
struct Pair {
    Number number;
    Model model;
};

bool IsSame(Number const& v, Model const& model) {
    if (v.isNaN() || model.isNaN) return v.isNaN() && model.isNaN;
    qor_text::CQorStringT<char> const text = v;
    for (int i = v.top + 1; i < 255; ++i)
        if (v.digits[i] != 0) return false;
    return v.sign == model.sign && text == model.magnitude.str().c_str();
}

// ---- Text ----

Model ParsedPlainly(std::string const& text) {
    if (text.empty() || text.size() > 255) return Model();
    std::size_t const first = text.find_first_not_of("+-");
    if (first == std::string::npos) return Model();
    if (text.find_first_not_of("0123456789", first) != std::string::npos) return Model();
    cpp_int value = 0;
    for (std::size_t i = first; i < text.size(); ++i) value = value * 10 + (text[i] - '0');
    return Model(value, first > 0 && text[first - 1] == '-' ? kNegative : kPositive);
}

// On the heap the address sanitizer watches both ends.
template <typename T>
Number Parsed(std::string const& text) {
    std::unique_ptr<T[]> const copy(new T[text.size() + 1]);
    for (std::size_t i = 0; i < text.size(); ++i)
        copy[i] = static_cast<T>(static_cast<unsigned char>(text[i]));
    copy[text.size()] = T();
    return Number(copy.get());
}

Pair ParseBoth(std::string const& text) {
    Pair const result = {Parsed<char>(text), ParsedPlainly(text.c_str())};  // up to a zero
    Require(IsSame(result.number, result.model));
    Require(IsSame(Parsed<wchar_t>(text), result.model));
    return result;
}

void RequireWritten(Pair const& v, unsigned int size) {
    if (v.model.isNaN || size < 2) return;
    std::string const expected = v.model.magnitude.str();
    std::unique_ptr<char[]> const room(new char[size]);
    bool const fits = expected.size() < size;
    Require(v.number.cast2s(room.get(), size) == fits);
    Require(room.get() == (fits ? expected : ""));
}

// ---- Moves ----

Model Difference(cpp_int const& a, cpp_int const& b) {
    if (b > a) return Model(b - a, kNegative);
    return Model(a - b, a >= kLeast256Digits ? 0 : kPositive);
}

Model Sum(Model const& a, Model const& b) {
    if (a.sign != b.sign) return Difference(a.magnitude, b.Positive());
    cpp_int const larger = a.magnitude > b.magnitude ? a.magnitude : b.magnitude;
    if (larger >= kLeast256Digits) return Model();
    return Model(a.magnitude + b.magnitude, larger >= kLeast255Digits ? 0 : a.sign);
}

Model Quotient(Model const& a, Model const& b) {
    if (b.magnitude == 0) return Model();
    return Model(a.Positive() / b.Positive(), a.Has256Digits() ? 0 : kPositive);
}

Model Product(Model const& a, Model const& b) {
    cpp_int const product = a.magnitude * b.magnitude;
    return product < kLeast256Digits ? Model(product, kPositive) : Model();
}

Model Shifted(Model const& a, unsigned int n) {
    if (n == 0 || a.magnitude == 0) return a;
    cpp_int const shifted = a.magnitude * Power(n);
    return shifted < kLeast256Digits * 10 ? Model(shifted, a.sign) : Model();
}

// Returns false when a sign took the place of a digit.
bool Move(int choice, unsigned int amount, Pair* a, Pair* b) {
    bool const isNaN = a->model.isNaN || b->model.isNaN;
    switch (choice) {
        case 0: {
            Model const sum = isNaN ? Model() : Sum(a->model, b->model);
            bool const changesSign = !isNaN && a->model.sign != b->model.sign;
            a->number += b->number;
            a->model = sum;
            if (changesSign && b->model.Has256Digits()) return false;
            if (changesSign) b->model.sign = kNegative;
            break;
        }
        case 1:
            if (!isNaN && b->model.magnitude - a->model.magnitude >= kLeast256Digits) return false;
            a->number -= b->number;
            a->model = isNaN ? Model() : Difference(a->model.magnitude, b->model.magnitude);
            break;
        case 2:
            a->number *= b->number;
            a->model = isNaN ? Model() : Product(a->model, b->model);
            break;
        case 3:
            a->number /= b->number;
            a->model = isNaN ? Model() : Quotient(a->model, b->model);
            break;
        case 4:
            digit_shift(&a->number, static_cast<int>(amount));
            if (!a->model.isNaN) a->model = Shifted(a->model, amount);
            break;
        case 5:
            if (a->model.isNaN || a->model.Has256Digits()) return false;
            a->number = -a->number;
            if (a->model.sign != 0) a->model.sign = kPositive + kNegative - a->model.sign;
            break;
        case 6:
            RequireWritten(*a, amount + 1);
            break;
        default:
            std::swap(*a, *b);
            break;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    std::string const bytes(reinterpret_cast<char const*>(input), size);
    std::size_t const first = bytes.find('\n');
    if (first == std::string::npos) return 0;
    std::size_t const second = bytes.find('\n', first + 1);
    if (second == std::string::npos) return 0;

    Pair a = ParseBoth(bytes.substr(0, first));
    Pair b = ParseBoth(bytes.substr(first + 1, second - first - 1));
    for (std::size_t i = second + 1; i + 1 < size && i < second + 200; i += 2) {
        if (!Move(input[i] % 8, input[i + 1], &a, &b)) return 0;
        Require(IsSame(a.number, a.model));
        Require(IsSame(b.number, b.model));
        if (!a.model.isNaN && !b.model.isNaN)
            Require(a.number.compare(b.number) == a.model.magnitude.compare(b.model.magnitude));
    }
    return 0;
}
