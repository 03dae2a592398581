// A plug-in writes to the log of the program that loads it, until it is unloaded. The build defines
// QORUTILS_LOGGING_PLUGIN, its path.

#include <qorutils/logging/main_logger.h>
#include <qorutils/logging/trace.h>

#include <dlfcn.h>
#include <stdlib.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/built_file.h"
#include "support/main_log.h"
#include "support/own_process.h"
#include "support/temporary_directory.h"

namespace {

using Messages = std::vector<std::string>;

class LoggingPlugin : public testing::Test {
  protected:
    // The messages of a process that does this, but for the banner.
    template <typename Action>
    Messages MessagesOf(Action action) {
        InOwnProcess([&](std::ostream&) {
            setenv("TMPDIR", directory_.Path("").c_str(), 1);
            action();
        });
        Messages messages = MessagesOfFile(directory_.Path("qor1.log.txt"));
        directory_.Remove("qor1.log.txt");
        directory_.Remove("qor.seq.ini");
        if (!messages.empty()) messages.erase(messages.begin());
        return messages;
    }

    static void* Load() {
        std::string const path = BuiltFile(QORUTILS_LOGGING_PLUGIN);
        void* const plugin = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (plugin == nullptr) ADD_FAILURE() << dlerror();
        return plugin;
    }

    static void Call(void* plugin) {
        auto const speak = reinterpret_cast<void (*)()>(dlsym(plugin, "Speak"));
        if (speak == nullptr)
            ADD_FAILURE() << dlerror();
        else
            speak();
    }

    TemporaryDirectory directory_;
};

TEST_F(LoggingPlugin, WritesToTheProgramsLogUntilItIsUnloaded) {
    EXPECT_EQ((Messages{"first", "plug-in loaded", "plug-in called", "plug-in unloaded", "last",
                        "Logging finished"}),
              MessagesOf([] {
                  qor_logging::QOR_TRACE_ALWAYS("first");
                  void* const plugin = Load();
                  Call(plugin);
                  dlclose(plugin);
                  qor_logging::QOR_TRACE_ALWAYS("last");
              }));
}

TEST_F(LoggingPlugin, MakesTheLogThatTheProgramGoesOnWith) {
    EXPECT_EQ((Messages{"plug-in loaded", "plug-in unloaded", "last", "Logging finished"}),
              MessagesOf([] {
                  dlclose(Load());
                  qor_logging::QOR_TRACE_ALWAYS("last");
              }));
}

TEST_F(LoggingPlugin, WritesItsLastWordWhenItIsLeftLoaded) {
    EXPECT_EQ((Messages{"plug-in loaded", "last", "plug-in unloaded", "Logging finished"}),
              MessagesOf([] {
                  Load();
                  qor_logging::QOR_TRACE_ALWAYS("last");
              }));
}

}  // namespace
