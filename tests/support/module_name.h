// The module file name, from which the library takes the application's name and directories.
#ifndef QORUTILS_TESTS_SUPPORT_MODULE_NAME_H_
#define QORUTILS_TESTS_SUPPORT_MODULE_NAME_H_

#include <qorutils/appdirs/module_file_name.h>

#include <cstddef>
#include <cwchar>
#include <string>

// From now on the platform's hook yields this name. The library asks for it once a process.
inline void NameModule(std::wstring const& name) {
    static std::wstring yielded;
    yielded = name;
    qor_appdirs::SetModuleFileNameHook([](wchar_t* buffer, int size) {
        std::wcsncpy(buffer, yielded.c_str(), static_cast<std::size_t>(size));
    });
}

#endif  // QORUTILS_TESTS_SUPPORT_MODULE_NAME_H_
