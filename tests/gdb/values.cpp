// Values of every kind, for a debugger that stops in Stop.
#include <cstdint>
#include <cstring>
#include <map>
#include <vector>

#include "qorutils/bignum/bignum.h"
#include "qorutils/formats/qor_array.h"
#include "qorutils/fs/qor_ini_file.h"
#include "qorutils/qorsys/qor_time.h"
#include "qorutils/qorsys/win_time.h"
#include "qorutils/text/qor_string.h"

namespace {

using String = qor_text::CQorStringT<char>;
using WideString = qor_text::CQorStringT<wchar_t>;
using Number = bignum_t<255>;
using Numbers = qor_templ::CQorArray<int>;

void* const kNowhere = reinterpret_cast<void*>(0x10);

// A string's buffer with a header of any kind.
struct Buffer {
    std::int32_t nRefs;
    std::int32_t nDataLength;
    std::int32_t nAllocLength;
    char text[500];
};

// The memory as if there were a T.
template <typename T, typename Memory>
T& TakenFor(Memory& memory) {
    static_assert(sizeof(Memory) >= sizeof(T), "a T of this memory alone");
    return *static_cast<T*>(static_cast<void*>(&memory));
}

__attribute__((noinline)) void Stop() {
    asm volatile("");
}

void ShowStrings() {
    String const narrow("report.txt");
    String const* const pointer = &narrow;
    String const& reference = narrow;
    String const shared = narrow;
    String const empty;
    String const withZero("a\0b\0", 4);
    String const latin("\xe9t\xe9 5");
    String const longText('x', 300);
    WideString const wide(L"\u20ac 5 \u2192 \U0001f600");
    WideString const notCharacters(static_cast<wchar_t>(0x7fffffff), 2);
    String spare;
    std::strcpy(spare.GetBuffer(100), "spare");
    spare.ReleaseBuffer();
    String locked("locked");
    locked.LockBuffer();
    std::vector<String> const list{"one", narrow, ""};
    std::map<WideString, WideString> const byName{{L"key", L"value"}, {L"other", L""}};
    qor_templ::CQorArray<String> array;
    array.Add("first");
    array.Add("second");
    Numbers noNumbers;
    qor_templ::CQorArray<bool> noAnswers;
    Stop();
}

void ShowNoStrings() {
    Buffer huge = {7, INT32_MAX, INT32_MAX, ""};
    for (int i = 0; i < 500; ++i) huge.text[i] = static_cast<char>('a' + i % 26);
    Buffer freed = {0, 4, 4, "gone"};
    Buffer unlocked = {-2, 4, 4, "text"};
    Buffer negative = {1, -4, 4, "text"};
    Buffer overrun = {1, 5, 4, "texts"};
    Buffer written = {-1, 1, 0, "x"};

    void* words[] = {huge.text,    freed.text,   unlocked.text, negative.text,
                     overrun.text, written.text, nullptr,       kNowhere};
    void* backwards[] = {huge.text, huge.text - 8, nullptr};
    void* lost[] = {nullptr, kNowhere, nullptr};
    String& hugeLength = TakenFor<String>(words[0]);
    String& freedBuffer = TakenFor<String>(words[1]);
    String& unlockedTwice = TakenFor<String>(words[2]);
    String& negativeLength = TakenFor<String>(words[3]);
    String& longerThanRoom = TakenFor<String>(words[4]);
    String& writtenNil = TakenFor<String>(words[5]);
    String& null = TakenFor<String>(words[6]);
    String& nowhere = TakenFor<String>(words[7]);
    Numbers& negativeSize = TakenFor<Numbers>(backwards);
    Numbers& nullNumbers = TakenFor<Numbers>(lost);
    Stop();
}

void ShowSettings() {
    qor_settings::CThreeTupleStore empty;
    qor_settings::CThreeTupleStore single;
    single[L"Only"].name = L"Only";
    qor_settings::CThreeTupleStore store;
    store[L"Port"].name = L"Port";
    store[L"Port"].values[L"Speed"] = L"9600";
    store[L"Port"].values[L"Parity"] = L"";
    store[L"Renamed"].name = L"Display";
    for (wchar_t c = L'a'; c <= L'g'; ++c) store[L"Letters"].values[c] = c;
    qor_settings::CThreeTupleStore const& reference = store;
    qor_settings::CThreeTupleStore::TQorIniSection const& section = store[L"Renamed"];

    void* words[] = {kNowhere, kNowhere, kNowhere, kNowhere, kNowhere, kNowhere};
    qor_settings::CThreeTupleStore& noStore = TakenFor<qor_settings::CThreeTupleStore>(words);
    void* copy[6];
    std::memcpy(copy, static_cast<void*>(&store), sizeof store);
    qor_settings::CThreeTupleStore& copiedBytes = TakenFor<qor_settings::CThreeTupleStore>(copy);

    // A node (colour, parent, left, right, entry) whose two children are one.
    void* child[8] = {};
    void* node[8] = {};
    void* twins[6] = {nullptr, nullptr, node};
    child[1] = node;
    node[1] = twins + 1;
    node[2] = node[3] = child;
    qor_settings::CThreeTupleStore& oneChildTwice = TakenFor<qor_settings::CThreeTupleStore>(twins);
    Stop();
}

void ShowNumbers() {
    Number const zero("0");
    Number const count("12345678901234567890123");
    Number const negative("-5");
    Number const nan;
    Number digits254("1");
    digit_shift(&digits254, 253);
    Number digits256("7");
    digit_shift(&digits256, 255);
    Number sumWithoutSign("1");
    digit_shift(&sumWithoutSign, 254);
    sumWithoutSign += sumWithoutSign;
    std::vector<Number> const list{zero, negative};
    unsigned char bytes[sizeof(Number)];
    std::memset(bytes, 'n', sizeof bytes);
    Number& noNumber = TakenFor<Number>(bytes);
    Stop();
}

void ShowTimes() {
    base::CTime const epoch;
    base::CTime const time(1433161800);
    base::CTime const before1970(-1);
    base::CTime const lastDate(253402300799);
    base::CTime const afterLastDate(253402300800);
    base::CTime const lowest(INT64_MIN);
    base::CTimeSpan const span(93784);
    base::CTimeSpan const negativeSpan(-90);
    base::CTimeSpan const shortest(INT64_MIN);
    _FILETIME const start = {0, 0};
    FILETIME const fileTime = {0x9ea41c87, 0x01d09c66};
    _FILETIME const before1601 = {0xffffffff, 0xffffffff};
    _FILETIME const noFileDate = {0xffffffff, 0x7fffffff};
    _SYSTEMTIME const systemTime = {2015, 6, 1, 1, 12, 30, 0, 7};
    _SYSTEMTIME const noDate = {65535, 0, 99, 7, 24, 60, 65535, 1000};
    base::CTime const* const pointer = &time;
    base::CTime const& reference = time;
    Stop();
}

}  // namespace

int main() {
    ShowStrings();
    ShowNoStrings();
    ShowSettings();
    ShowNumbers();
    ShowTimes();
}
