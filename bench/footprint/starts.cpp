// Starts, asks the library for one thing, and ends.

#include <qorutils/text/qor_string.h>

int main(int argc, char**) {
    qor_text::CQorStringT<char> text;
    text.Format("%d word", argc);
    return text == "1 word" ? 0 : 1;
}
