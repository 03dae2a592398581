// A plug-in that logs when it is loaded, and when it is unloaded.

#include <qorutils/logging/trace.h>

namespace {

struct Speaker {
    Speaker() { qor_logging::QOR_TRACE_ALWAYS("plug-in loaded"); }
    ~Speaker() { qor_logging::QOR_TRACE_ALWAYS(L"plug-in unloaded"); }
    Speaker(Speaker const&) = delete;
    Speaker& operator=(Speaker const&) = delete;
} const speaker;

}  // namespace

extern "C" __attribute__((visibility("default"))) void Speak() {
    qor_logging::QOR_TRACE_ALWAYS("plug-in called");
}
