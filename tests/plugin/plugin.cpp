#include "plugin/plugin_interface.h"

namespace {

template <typename T>
qor_text::CQorStringT<T>* Make(T const* text) {
    return new qor_text::CQorStringT<T>(text);
}

template <typename T>
void Release(qor_text::CQorStringT<T>* string) {
    delete string;
}

PluginInterface const kInterface = {
    NilBuffer<char>, NilBuffer<wchar_t>, Make<char>, Make<wchar_t>, Release<char>, Release<wchar_t>,
};

}  // namespace

extern "C" __attribute__((visibility("default"))) PluginInterface const* GetPluginInterface() {
    return &kInterface;
}
