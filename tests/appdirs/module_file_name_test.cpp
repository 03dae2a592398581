// As in app_dirs_test.cpp, each case has a process of its own.
#include <qorutils/appdirs/module_file_name.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cwchar>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <qorutils/appdirs/app_dirs.h>

#include "support/no_directories.h"
#include "support/own_process.h"
#include "support/text_literal.h"

namespace {

using WideString = qor_text::CQorStringT<wchar_t>;
using Hook = void (*)(wchar_t* buffer, int size);

std::atomic<int> calls{0};  // of the hook, in this process

void Yield(wchar_t const* name, wchar_t* buffer, int size) {
    std::wcsncpy(buffer, name, static_cast<std::size_t>(size));
}

void WithHook(Hook hook, std::function<void()> const& action) {
    InOwnProcess([&](std::ostream&) {
        qor_appdirs::SetModuleFileNameHook(hook);
        action();
    });
}

TEST(ModuleFileNameHook, GetsAZeroFilledBufferOf260Characters) {
    WithHook(
        [](wchar_t* buffer, int size) {
            EXPECT_EQ(260, size);
            EXPECT_EQ(260, std::count(buffer, buffer + 260, L'\0'));
            ++calls;
        },
        [] {
            EXPECT_EQ(WideString(), GetExeDir());
            EXPECT_EQ(1, calls);
        });
}

TEST(ModuleFileNameHook, GetsAZeroFilledBufferEachTime) {
    WithHook(
        [](wchar_t* buffer, int size) {
            EXPECT_EQ(260, std::count(buffer, buffer + 260, L'\0'));
            Yield(L"C:\\App\\prog.exe", buffer, size);
            ++calls;
        },
        [] {
            EXPECT_EQ(WideString(L"C:\\App\\prog.exe"), GetApplicationPath());
            EXPECT_EQ(2, calls);
        });
}

TEST(ModuleFileNameHook, MayFillTheWholeBuffer) {
    WithHook(
        [](wchar_t* buffer, int size) {
            std::fill_n(buffer, size, L'x');
            buffer[3] = L'\\';
        },
        [] {
            std::wstring const name = L"xxx\\" + std::wstring(256, L'x');
            EXPECT_EQ(WideString(name.c_str()), GetApplicationPath());
            EXPECT_EQ(WideString(L"xxx"), GetExeDir());
        });
}

TEST(ModuleFileNameHook, IsReadUpToTheFirstZero) {
    WithHook(
        [](wchar_t* buffer, int size) {
            std::fill_n(buffer, size, L'\\');
            Yield(L"a\\b", buffer, 4);
        },
        [] { EXPECT_EQ(WideString(L"a\\b"), GetApplicationPath()); });
}

TEST(ModuleFileNameHook, IsAskedForTheFileOfTheProgramASecondTime) {
    WithHook(
        [](wchar_t* buffer, int size) {
            Yield(++calls == 1 ? L"C:\\App\\one.exe" : L"D:\\Other\\two.exe", buffer, size);
        },
        [] {
            EXPECT_EQ(WideString(L"C:\\App\\two.exe"), GetApplicationPath());
            EXPECT_EQ(WideString(L"C:\\App"), GetExeDir());
        });
}

TEST(ModuleFileNameHook, LeavesTheFileOfTheProgramEmptyWithoutASecondBackslash) {
    WithHook([](wchar_t* buffer,
                int size) { Yield(++calls == 1 ? L"C:\\App\\one.exe" : L"two.exe", buffer, size); },
             [] { EXPECT_EQ(WideString(L"C:\\App\\"), GetApplicationPath()); });
}

TEST(ModuleFileNameHook, IsAskedAgainAfterItThrew) {
    WithHook(
        [](wchar_t* buffer, int size) {
            Yield(L"C:\\App\\prog.exe", buffer, size);
            if (++calls < 4) throw std::runtime_error("not yet");
        },
        [] {
            for (int failed = 0; failed < 3; ++failed)
                EXPECT_THROW(GetRootDir(), std::runtime_error);
            EXPECT_EQ(WideString(L"C:\\App"), GetRootDir());
        });
}

TEST(ModuleFileNameHook, IsAskedAgainWhenOnlyItsSecondCallThrew) {
    WithHook(
        [](wchar_t* buffer, int size) {
            Yield(L"C:\\App\\prog.exe", buffer, size);
            if (++calls == 2) throw std::runtime_error("not yet");
        },
        [] {
            EXPECT_THROW(GetExeDir(), std::runtime_error);
            EXPECT_EQ(WideString(L"C:\\App\\prog.exe"), GetApplicationPath());
            EXPECT_EQ(4, calls);
        });
}

TEST(ModuleFileNameHook, FindsEveryDirectoryEmpty) {
    WithHook(
        [](wchar_t* buffer, int size) {
            ExpectNoDirectories();
            EXPECT_EQ(WideString(L"\\"), GetTavrelAppGeoidsDataDir());
            EXPECT_EQ(WideString(L"\\"), GetTavrelAppGeoDataDir());
            Yield(L"C:\\App\\prog.exe", buffer, size);
            ++calls;
        },
        [] {
            EXPECT_EQ(WideString(L"C:\\App"), GetRootDir());
            EXPECT_EQ(WideString(L"C:\\App\\Geo\\"), GetTavrelAppGeoDataDir());
            EXPECT_EQ(2, calls);
        });
}

TEST(ModuleFileNameHook, FindsEveryDirectoryEmptyAfterItThrewToo) {
    WithHook(
        [](wchar_t* buffer, int size) {
            EXPECT_EQ(WideString(), GetRootDir());
            Yield(L"C:\\App\\prog.exe", buffer, size);
            if (++calls == 1) throw std::runtime_error("not yet");
        },
        [] {
            EXPECT_THROW(GetRootDir(), std::runtime_error);
            EXPECT_EQ(WideString(L"C:\\App"), GetRootDir());
        });
}

TEST(ModuleFileNameHook, LeavesTheTableThatItWasShownEmpty) {
    static CApplicationDirectories const* shown = nullptr;
    WithHook(
        [](wchar_t* buffer, int size) {
            shown = &GetApplicationFileName();
            Yield(L"C:\\App\\prog.exe", buffer, size);
        },
        [] {
            EXPECT_EQ(WideString(L"C:\\App"), GetRootDir());
            ASSERT_NE(nullptr, shown);
            EXPECT_EQ(CApplicationDirectories(), *shown);
        });
}

// ---- Threads ----

// The root directory as each of so many threads finds it, all at once; "thrown" where it threw.
std::vector<WideString> RootDirsOfThreads(int count) {
    std::vector<WideString> found(static_cast<std::size_t>(count));
    std::atomic<int> waiting{count};
    std::vector<std::thread> threads;
    threads.reserve(found.size());
    for (WideString& each : found) {
        threads.emplace_back([&] {
            --waiting;
            while (waiting != 0) std::this_thread::yield();
            try {
                each = GetRootDir();
            } catch (std::runtime_error const&) {
                each = L"thrown";
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    return found;
}

// Long enough for the other threads to arrive, as a rule; no result depends on it.
void LetOthersCome() {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

TEST(ModuleFileNameHook, BuildsOneTableForAllThreads) {
    WithHook(
        [](wchar_t* buffer, int size) {
            ++calls;
            LetOthersCome();
            EXPECT_EQ(WideString(), GetRootDir());
            Yield(L"C:\\App\\prog.exe", buffer, size);
        },
        [] {
            EXPECT_EQ(std::vector<WideString>(8, L"C:\\App"), RootDirsOfThreads(8));
            EXPECT_EQ(2, calls);
        });
}

TEST(ModuleFileNameHook, LetsAnotherThreadTryWhenItThrew) {
    WithHook(
        [](wchar_t* buffer, int size) {
            LetOthersCome();
            Yield(L"C:\\App\\prog.exe", buffer, size);
            if (++calls <= 3) throw std::runtime_error("not yet");
        },
        [] {
            std::vector<WideString> const found = RootDirsOfThreads(8);
            EXPECT_EQ(3, std::count(found.begin(), found.end(), WideString(L"thrown")));
            EXPECT_EQ(5, std::count(found.begin(), found.end(), WideString(L"C:\\App")));
            EXPECT_EQ(5, calls);
        });
}

}  // namespace
