#include <qorutils/logging/trace.h>
#include <qorutils/text/qor_string.h>

#include <cstdio>

int main() {
    qor_text::CQorStringT<char> greeting;
    greeting.Format("%s, %d %s", "hello", 32, "bits");
    greeting.Replace("hello", "Hello");
    qor_text::CQorStringT<char> copy = greeting;  // shares the buffer until one of the two changes
    copy.MakeUpper();
    std::printf("%s\n%s\n", greeting.c_str(), copy.c_str());
    qor_logging::QOR_TRACE_ALWAYS("a greeting of %d characters", copy.GetLength());
}
