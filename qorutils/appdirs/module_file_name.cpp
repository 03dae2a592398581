#include "qorutils/appdirs/module_file_name.h"

#include <atomic>

#include "qorutils/appdirs/module_file_query.h"

using qor_text::CQorStringT;

namespace qor_appdirs {

namespace {

using Hook = void (*)(wchar_t* buffer, int size);

constexpr int kNameSize = 260;

std::atomic<Hook> currentHook{nullptr};

}  // namespace

void SetModuleFileNameHook(Hook hook) {
    currentHook = hook;
}

CQorStringT<wchar_t> QueryModuleFileName() {
    Hook const hook = currentHook;
    if (hook == nullptr) return {};
    // One more than the hook is told of: it may fill its part without a terminator.
    wchar_t buffer[kNameSize + 1] = {};
    hook(buffer, kNameSize);
    return buffer;
}

}  // namespace qor_appdirs
