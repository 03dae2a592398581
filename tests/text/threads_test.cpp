// Strings that share buffers, each in the hands of one thread at a time. Meant for the thread
// sanitizer; without it, lost counts still show as leaks, double frees and wrong texts.

#include <atomic>
#include <cstddef>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <qorutils/text/qor_string.h>

#include "support/text_literal.h"

using qor_text::CQorStringT;

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 2000;

template <typename T>
class SharedBetweenThreads : public testing::Test {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(SharedBetweenThreads, CharacterTypes, );

// Runs body(0) to body(kThreads - 1) at once and waits for all.
void InThreads(std::function<void(int)> const& body) {
    std::atomic<int> waiting(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&body, &waiting, i] {
            for (--waiting; waiting > 0;) std::this_thread::yield();
            body(i);
        });
    }
    for (auto& thread : threads) thread.join();
}

}  // namespace

TYPED_TEST(SharedBetweenThreads, CopiesComeAndGo) {
    using T = TypeParam;
    auto const s = String<T>("shared by all");
    std::atomic<int> wrong(0);
    InThreads([&](int) {
        for (int round = 0; round < kRounds; ++round) {
            CQorStringT<T> const copy(s);
            CQorStringT<T> assigned;
            assigned = copy;
            CQorStringT<T> const moved(std::move(assigned));
            if (moved.GetLength() != 13 || moved.Compare(copy) != 0) ++wrong;
        }
    });
    EXPECT_EQ(0, wrong);
    EXPECT_EQ(1, Refs(s));
    EXPECT_EQ(Text<T>("shared by all"), s);
}

TYPED_TEST(SharedBetweenThreads, WritersGetTheirOwn) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    auto const s = WithRoom(Text<T>("banana"), 20);
    std::vector<std::function<void(S&)>> const writers = {
        [](S& x) { x.SetAt(0, T('c')); },
        [](S& x) { x += T('s'); },
        [](S& x) { x.Replace(Text<T>("an"), Text<T>("xyz")); },
        [](S& x) { x.GetBuffer(3)[1] = T('o'); },
        [](S& x) { x = Text<T>("other"); },
        [](S& x) { x.MakeUpper().MakeReverse().Trim(T('A')); },
        [](S& x) { x.Insert(1, x), x.Delete(0, 2), x.Remove(T('n')); },
        [](S& x) { x.LockBuffer(), x.Empty(), x.UnlockBuffer(); },
        [](S& x) { x.FreeExtra(), x.Truncate(2); },
        [](S& x) { x = x.Mid(1, 3) + x.Left(2); },
    };
    InThreads([&](int thread) {
        for (int round = 0; round < kRounds; ++round) {
            S copy(s);
            writers[static_cast<std::size_t>(thread + round) % writers.size()](copy);
        }
    });
    EXPECT_EQ(1, Refs(s));
    EXPECT_EQ(Text<T>("banana"), s);
}

TYPED_TEST(SharedBetweenThreads, LastSharersWriteAndLeaveAtOnce) {
    using T = TypeParam;
    // All references but those of the threads are gone when they write: whoever copies must not
    // lose the characters to the one that leaves.
    std::atomic<int> wrong(0);
    for (int round = 0; round < kRounds / 10; ++round) {
        std::vector<CQorStringT<T>> strings(kThreads, CQorStringT<T>(T('x'), 200));
        InThreads([&](int thread) {
            auto& mine = strings[static_cast<std::size_t>(thread)];
            switch (thread % 4) {
                case 0:
                    mine.SetAt(0, T('y'));
                    break;
                case 1:
                    mine.Empty();
                    break;
                case 2:
                    mine += T('z');
                    break;
                default:
                    mine.GetBuffer(10)[5] = T('w');
                    break;
            }
            int const expected = thread % 4 == 1 ? 0 : thread % 4 == 2 ? 201 : 200;
            if (mine.GetLength() != expected || !IsTerminated(mine)) ++wrong;
            if (expected != 0 && (Refs(mine) != 1 || mine[100] != T('x'))) ++wrong;
        });
    }
    EXPECT_EQ(0, wrong);
}

TYPED_TEST(SharedBetweenThreads, LastOwnerMayWriteInPlaceAfterTheOthersLeft) {
    using T = TypeParam;
    // One thread reads its copy and drops it; another writes without copying once it owns the
    // buffer alone. The write must come after the reads.
    for (int round = 0; round < kRounds / 10; ++round) {
        CQorStringT<T> writer(T('x'), 50);
        CQorStringT<T> reader(writer);
        std::atomic<int> sum(0);
        std::thread other([&reader, &sum] {
            for (T const ch : reader) sum += ch == T('x');
            reader.Empty();
        });
        writer.SetAt(0, T('y'));
        writer.MakeUpper();
        other.join();
        ASSERT_EQ(50, sum);
        ASSERT_EQ(T('Y'), writer[0]);
    }
}

TYPED_TEST(SharedBetweenThreads, NilStringIsUsedByAllAndWrittenByNone) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    S const nil;
    InThreads([&](int) {
        for (int round = 0; round < kRounds; ++round) {
            S s(nil);
            s = nil;
            s = Text<T>("");
            s = static_cast<T const*>(nullptr);
            s.AssignCopy(0, nullptr);
            s.ReleaseBuffer();
            s.ReleaseBuffer(0);
            s.GetBufferSetLength(0);
            s.LockBuffer();
            s.UnlockBuffer();
            s.Empty();
            s.Truncate(0);
            s.FreeExtra();
            s.Trim();
            s.TrimLeft(T('x'));
            s.TrimRight(T('x'));
            s.Trim(Text<T>("x"));
            s.MakeUpper();
            s.MakeLower();
            s.MakeReverse();
            s.Remove(T('x'));
            s.Replace(T('x'), T('y'));
            s.Replace(Text<T>("x"), Text<T>("y"));
            s.Delete(0);
            s += nil;
            S const moved(std::move(s));
            s = S(S::AfxGetEmptyString()) + moved;
        }
    });
    EXPECT_TRUE(IsNil(nil));
    EXPECT_EQ(-1, Refs(nil));
    EXPECT_EQ(0, nil.GetLength());
}

TYPED_TEST(SharedBetweenThreads, StringsBornInOneThreadDieInAnother) {
    using T = TypeParam;
    std::vector<std::vector<CQorStringT<T>>> made(kThreads);
    InThreads([&](int thread) {
        auto& mine = made[static_cast<std::size_t>(thread)];
        for (int i = 0; i < 200; ++i) mine.emplace_back(T('a' + thread), i);
    });
    InThreads([&](int thread) {
        auto& others = made[static_cast<std::size_t>((thread + 1) % kThreads)];
        for (auto& s : others) s += T('!');
        others.erase(others.begin(), others.begin() + 100);
    });
    for (int thread = 0; thread < kThreads; ++thread) {
        auto const& strings = made[static_cast<std::size_t>(thread)];
        ASSERT_EQ(100u, strings.size());
        EXPECT_EQ(CQorStringT<T>(T('a' + thread), 199) + T('!'), strings.back());
    }
}

TYPED_TEST(SharedBetweenThreads, FormatAndSearchNeedNoOrder) {
    using T = TypeParam;
    auto const text = String<T>("one,two;three");
    std::atomic<int> wrong(0);
    InThreads([&](int thread) {
        for (int round = 0; round < kRounds / 10; ++round) {
            int start = 0, tokens = 0;
            for (auto token = text.Tokenize(Text<T>(",;"), start); start != -1;
                 token = text.Tokenize(Text<T>(",;"), start))
                ++tokens;
            CQorStringT<T> s;
            s.Format(Text<T>("%d"), thread);
            if (tokens != 3 || s[0] != T('0' + thread) || text.Find(Text<T>("three")) != 8 ||
                text.CompareNoCase(Text<T>("ONE,TWO;THREE")) != 0)
                ++wrong;
        }
    });
    EXPECT_EQ(0, wrong);
}
