// Numbers to wide text and back. Every subject gets the same thousand numbers in turn.

#include <qorutils/formats/number_text.h>
#include <qorutils/formats/time_text.h>

#include <array>
#include <boost/lexical_cast.hpp>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

#include "cases.h"
#include "peers.h"

namespace {

using qor_text::CQorStringT;

template <typename T>
class InTurn {
  public:
    explicit InTurn(std::vector<T> values) : values_(std::move(values)) {}
    T const& next() { return values_[++last_ % values_.size()]; }

  private:
    std::vector<T> values_;
    std::size_t last_ = 0;
};

constexpr int kCount = 1000;

// Numbers of every length and both signs.
template <typename Integer>
std::vector<Integer> Integers() {
    std::mt19937_64 random(5);
    std::vector<Integer> values;
    values.reserve(kCount);
    for (int i = 0; i < kCount; ++i)
        values.push_back(static_cast<Integer>(static_cast<Integer>(random()) >> random() % 31));
    return values;
}

// As measured, that is, with more decimals than anybody needs, or as typed.
std::vector<double> Doubles(bool areTyped) {
    std::minstd_rand random(6);
    std::vector<double> values;
    values.reserve(kCount);
    for (int i = 0; i < kCount; ++i) {
        double const value = (static_cast<int>(random()) - 1073741824) / 1e4;
        values.push_back(areTyped ? value : value / 3.1);
    }
    return values;
}

template <typename T>
std::vector<std::wstring> Texts(std::vector<T> const& values) {
    std::vector<std::wstring> texts;
    for (T const value : values) texts.push_back(std::to_wstring(value));
    return texts;
}

template <typename... Arguments>
int PrintedLength(wchar_t const* format, Arguments... arguments) {
    wchar_t text[400];
    int const length = std::swprintf(text, 400, format, arguments...);
    benchmark::DoNotOptimize(text);
    return length;
}

template <typename Integer, typename Format>
void RegisterIntegersOut(std::string const& group, wchar_t const* printed, Format format) {
    InTurn<Integer> values(Integers<Integer>());
    Case(group, "qorutils", [values, format]() mutable { return format(values.next()); });
    Case(group, "floor: one string", [values]() mutable {
        values.next();
        return CQorStringT<wchar_t>(L"1234567890", 6);
    });
    Case(group, "std::to_wstring", [values]() mutable { return std::to_wstring(values.next()); });
    Case(group, "swprintf",
         [values, printed]() mutable { return PrintedLength(printed, values.next()); });
    Case(group, "Boost.LexicalCast",
         [values]() mutable { return boost::lexical_cast<std::wstring>(values.next()); });
#ifdef QORUTILS_BENCH_QT
    Case(group, "QString", [values]() mutable { return QString::number(values.next()); });
#endif
}

void RegisterInt64Out() {
    InTurn<long long> values(Integers<long long>());
    Case("Int64ToString", "qorutils",
         [values]() mutable { return qor_formats::Int64ToString(values.next()); });
    Case("Int64ToString", "swprintf",
         [values]() mutable { return PrintedLength(L"%I64d", static_cast<int>(values.next())); });
#ifdef QORUTILS_BENCH_QT
    Case("Int64ToString", "QString",
         [values]() mutable { return QStringLiteral("%1").arg(values.next(), 64); });
#endif
}

void RegisterDoublesOut(bool areTyped) {
    InTurn<double> values(Doubles(areTyped));
    std::string const kind = areTyped ? "typed" : "measured";
    for (int const decimals : {12, 3}) {
        std::string const group = "DoubleToString/" + kind + "/" + std::to_string(decimals);
        if (decimals == 12)
            Case(group, "qorutils",
                 [values]() mutable { return qor_formats::DoubleToString(values.next()); });
        else
            Case(group, "qorutils", [values, decimals]() mutable {
                return qor_formats::DoubleToString(values.next(), decimals);
            });
        Case(group, "swprintf", [values, decimals]() mutable {
            return PrintedLength(L"%.*lf", decimals, values.next());
        });
#ifdef QORUTILS_BENCH_QT
        Case(group, "QString", [values, decimals]() mutable {
            return QString::number(values.next(), 'f', decimals);
        });
#endif
    }
}

template <typename Integer, typename Parse>
void RegisterIntegersIn(std::string const& group, wchar_t const* scanned, Parse parse) {
    InTurn<std::wstring> texts(Texts(Integers<Integer>()));
    Case(group, "qorutils", [texts, parse]() mutable {
        Integer value = 0;
        parse(texts.next().c_str(), value);
        return value;
    });
    Case(group, "swscanf", [texts, scanned]() mutable {
        Integer value = 0;
        std::swscanf(texts.next().c_str(), scanned, &value);
        return value;
    });
    Case(group, "wcstol", [texts]() mutable {
        return static_cast<Integer>(std::wcstol(texts.next().c_str(), nullptr, 10));
    });
    Case(group, "Boost.LexicalCast",
         [texts]() mutable { return boost::lexical_cast<Integer>(texts.next()); });
}

#ifdef QORUTILS_BENCH_QT
void RegisterQtIntegersIn() {
    std::vector<QString> strings;
    for (std::wstring const& text : Texts(Integers<int>()))
        strings.push_back(QString::fromStdWString(text));
    InTurn<QString> texts(strings);
    Case("StringToInt", "QString", [texts]() mutable { return texts.next().toInt(); });
}
#endif

void RegisterDoublesIn() {
    std::vector<CQorStringT<wchar_t>> strings;
    for (std::wstring const& text : Texts(Doubles(true))) strings.emplace_back(text.c_str());
    InTurn<CQorStringT<wchar_t>> texts(strings);
    Case("StringToDouble", "qorutils", [texts]() mutable {
        double value;
        qor_formats::StringToDouble(texts.next(), value);
        return value;
    });
    Case("StringToDouble", "swscanf", [texts]() mutable {
        double value = 0;
        std::swscanf(texts.next(), L"%lf", &value);
        return value;
    });
}

void RegisterDateTime() {
    CQorStringT<wchar_t> const text(L"2015-06-01 14:30:59");
    Case("ParseDtTimeAttrFormatFromStr", "qorutils", [text] {
        _SYSTEMTIME st;
        qor_formats::ParseDtTimeAttrFormatFromStr(text, st);
        return st;
    });
    Case("ParseDtTimeAttrFormatFromStr", "swscanf", [text] {
        std::array<short, 6> f;
        std::swscanf(text, L"%hd-%hd-%hd %hd:%hd:%hd", &f[0], &f[1], &f[2], &f[3], &f[4], &f[5]);
        return f;
    });
}

void RegisterIncrement() {
    for (int const zeros : {0, 200}) {
        std::wstring const name = L"track" + std::wstring(static_cast<std::size_t>(zeros), L'9');
        CQorStringT<wchar_t> const text((name + L"0099").c_str());
        Case("DoIncPtno/" + std::to_string(zeros + 4), "qorutils", [text] {
            CQorStringT<wchar_t> next(text);
            qor_formats::DoIncPtno(next, 1);
            return next;
        });
    }
}

}  // namespace

int main(int argc, char** argv) {
    RegisterIntegersOut<int>("IntToString", L"%d", qor_formats::IntToString);
    RegisterIntegersOut<unsigned int>("UIntToString", L"%u", qor_formats::UIntToString);
    RegisterInt64Out();
    RegisterDoublesOut(false);
    RegisterDoublesOut(true);
    RegisterIntegersIn<int>("StringToInt", L"%d", qor_formats::StringToInt);
    RegisterIntegersIn<long>("StringToLong", L"%ld", qor_formats::StringToLong);
    RegisterIntegersIn<short>("StringToShort", L"%hd", qor_formats::StringToShort);
    RegisterIntegersIn<long long>("StringToInt64", L"%I64d", qor_formats::StringToInt64);
#ifdef QORUTILS_BENCH_QT
    RegisterQtIntegersIn();
#endif
    RegisterDoublesIn();
    RegisterDateTime();
    RegisterIncrement();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
