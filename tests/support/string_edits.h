// Changes to strings, watched: what became of the buffer, and of the others that share it.
#ifndef QORUTILS_TESTS_SUPPORT_STRING_EDITS_H_
#define QORUTILS_TESTS_SUPPORT_STRING_EDITS_H_

#include <gtest/gtest.h>

#include <qorutils/text/qor_string.h>

#include "support/text_literal.h"

// Applies `change` to a sharer of `text`: the other sharer stays as it is, and the changed one has
// a buffer of its own even if nothing changed in it.
template <typename T, typename Change>
void ExpectPrivateCopy(TextLiteral<T> const& text, Change change) {
    qor_text::CQorStringT<T> const keeper(text.c_str(), text.size());
    auto s = keeper;
    change(s);
    EXPECT_NE(keeper.c_str(), s.c_str());
    EXPECT_EQ(text, keeper);
    EXPECT_EQ(1, Refs(keeper));
}

// Applies `change` to a sharer of `text`: it goes on sharing.
template <typename T, typename Change>
void ExpectStillShared(TextLiteral<T> const& text, Change change) {
    qor_text::CQorStringT<T> const keeper(text.c_str(), text.size());
    auto s = keeper;
    change(s);
    EXPECT_EQ(keeper.c_str(), s.c_str());
    EXPECT_EQ(2, Refs(keeper));
    EXPECT_EQ(text, keeper);
}

// Applies `change` to `text` in a private buffer with spare room, which must stay.
template <typename T, typename Change>
void ExpectInPlace(TextLiteral<T> const& expected, TextLiteral<T> const& text, Change change) {
    auto s = WithRoom(text, text.size() + 3);
    T const* const buffer = s.c_str();
    change(s);
    EXPECT_EQ(expected, s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(text.size() + 3, s.GetAllocLength());
}

#endif  // QORUTILS_TESTS_SUPPORT_STRING_EDITS_H_
