// Whole numbers of 20 to 250 digits beside the big numbers of GMP and Boost. Operands come as
// decimal text and results leave as such.

#include <qorutils/bignum/bignum.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <cstring>
#include <random>
#include <string>

#include "cases.h"

#ifdef QORUTILS_BENCH_GMP
#include <gmp.h>
#endif

namespace {

// Every subject keeps its numbers from one run to the next, so that those that allocate do it once.

class Qor {
  public:
    void Parse(char const* text) { value_ = text; }
    void Print(char* text) const {
        unsigned int size = 256;
        value_.cast2s(text, size);
    }
    void Add(Qor const& b) { value_ += b.value_; }
    void Subtract(Qor const& b) { value_ -= b.value_; }
    void Multiply(Qor const& b) { value_ *= b.value_; }
    void Divide(Qor const& b) { value_ /= b.value_; }

  private:
    bignum_t<255> value_;
};

class CppInt {
  public:
    void Parse(char const* text) { value_.assign(text); }
    void Print(char* text) const { std::strcpy(text, value_.str().c_str()); }
    void Add(CppInt const& b) { value_ += b.value_; }
    void Subtract(CppInt const& b) { value_ -= b.value_; }
    void Multiply(CppInt const& b) { value_ *= b.value_; }
    void Divide(CppInt const& b) { value_ /= b.value_; }

  private:
    boost::multiprecision::cpp_int value_;
};

#ifdef QORUTILS_BENCH_GMP
class Gmp {
  public:
    Gmp() { mpz_init(value_); }
    Gmp(Gmp const& other) { mpz_init_set(value_, other.value_); }
    Gmp& operator=(Gmp const&) = delete;
    ~Gmp() { mpz_clear(value_); }

    void Parse(char const* text) { mpz_set_str(value_, text, 10); }
    void Print(char* text) const { mpz_get_str(text, 10, value_); }
    void Add(Gmp const& b) { mpz_add(value_, value_, b.value_); }
    void Subtract(Gmp const& b) { mpz_sub(value_, value_, b.value_); }
    void Multiply(Gmp const& b) { mpz_mul(value_, value_, b.value_); }
    void Divide(Gmp const& b) { mpz_tdiv_q(value_, value_, b.value_); }

  private:
    mpz_t value_;
};
#endif

// n digits, the first of which is given.
std::string Digits(std::size_t n, char first) {
    std::minstd_rand random(static_cast<unsigned>(n));
    std::string text(1, first);
    while (text.size() < n) text += static_cast<char>('0' + random() % 10);
    return text;
}

template <typename Number>
void RegisterOperation(std::string const& group, char const* subject, std::string const& left,
                       std::string const& right, void (Number::*operation)(Number const&)) {
    Number a, b;
    Case(group, subject, [=]() mutable {
        char text[260];
        a.Parse(left.c_str());
        b.Parse(right.c_str());
        (a.*operation)(b);
        a.Print(text);
        benchmark::DoNotOptimize(text);
        return text[0];
    });
}

template <typename Number>
void RegisterSubject(char const* subject, std::size_t n) {
    std::string const size = "/" + std::to_string(n) + " digits";
    std::string const large = Digits(n, '4');
    std::string const small = Digits(n, '3');
    std::string const half = Digits(n / 2, '7');
    Number value;
    Case("parse" + size, subject, [=]() mutable {
        value.Parse(large.c_str());
        benchmark::DoNotOptimize(value);
        return 0;
    });
    value.Parse(large.c_str());
    Case("print" + size, subject, [=]() mutable {
        char text[260];
        value.Print(text);
        benchmark::DoNotOptimize(text);
        return text[0];
    });
    RegisterOperation<Number>("add" + size, subject, large, small, &Number::Add);
    RegisterOperation<Number>("subtract" + size, subject, large, small, &Number::Subtract);
    RegisterOperation<Number>("multiply" + size, subject, half, half, &Number::Multiply);
    RegisterOperation<Number>("divide" + size, subject, large, half, &Number::Divide);
}

}  // namespace

int main(int argc, char** argv) {
    for (std::size_t n : {20u, 60u, 120u, 250u}) {
        RegisterSubject<Qor>("qorutils", n);
        RegisterSubject<CppInt>("cpp_int", n);
#ifdef QORUTILS_BENCH_GMP
        RegisterSubject<Gmp>("GMP", n);
#endif
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
