// What a plug-in offers to the program that loads it.
#ifndef TESTS_PLUGIN_PLUGIN_INTERFACE_H_
#define TESTS_PLUGIN_PLUGIN_INTERFACE_H_

#include <qorutils/text/qor_string.h>

struct PluginInterface {
    void const* (*narrow_nil)();
    void const* (*wide_nil)();
    qor_text::CQorStringT<char>* (*make_narrow)(char const* text);
    qor_text::CQorStringT<wchar_t>* (*make_wide)(wchar_t const* text);
    void (*release_narrow)(qor_text::CQorStringT<char>* string);
    void (*release_wide)(qor_text::CQorStringT<wchar_t>* string);
};

// The name and type of the one function that a plug-in exports.
constexpr char const* kPluginEntry = "GetPluginInterface";
using PluginEntry = PluginInterface const* (*)();

// The header of an empty string, as the module that calls this sees it.
template <typename T>
void const* NilBuffer() {
    return qor_text::CQorStringT<T>().GetData();
}

#endif  // TESTS_PLUGIN_PLUGIN_INTERFACE_H_
