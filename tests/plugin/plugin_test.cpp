#include <dlfcn.h>

#include <memory>

#include <gtest/gtest.h>

#include "plugin/plugin_interface.h"
#include "support/built_file.h"

namespace {

using Narrow = qor_text::CQorStringT<char>;
using Wide = qor_text::CQorStringT<wchar_t>;

// A plug-in, loaded so that its symbols stay its own, and unloaded at the end of the scope.
class Plugin {
  public:
    explicit Plugin(char const* path)
        : handle_(dlopen(BuiltFile(path).c_str(), RTLD_NOW | RTLD_LOCAL), dlclose) {
        if (!handle_) {
            ADD_FAILURE() << dlerror();
            return;
        }
        auto entry = reinterpret_cast<PluginEntry>(dlsym(handle_.get(), kPluginEntry));
        if (entry == nullptr)
            ADD_FAILURE() << dlerror();
        else
            interface_ = entry();
    }

    bool IsLoaded() const { return interface_ != nullptr; }
    PluginInterface const* operator->() const { return interface_; }

  private:
    std::unique_ptr<void, int (*)(void*)> handle_;
    PluginInterface const* interface_ = nullptr;
};

class TwoPlugins : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(a.IsLoaded() && b.IsLoaded()); }

    Plugin a{QORUTILS_PLUGIN_A};
    Plugin b{QORUTILS_PLUGIN_B};
};

TEST_F(TwoPlugins, AreTwoModules) {
    EXPECT_NE(a->make_narrow, b->make_narrow);
}

TEST_F(TwoPlugins, SeeTheNilBufferOfTheProgram) {
    void const* const nil = Narrow::get_afxDataNil();
    EXPECT_EQ(nil, NilBuffer<char>());
    EXPECT_EQ(nil, NilBuffer<wchar_t>());
    EXPECT_EQ(nil, a->narrow_nil());
    EXPECT_EQ(nil, a->wide_nil());
    EXPECT_EQ(nil, b->narrow_nil());
    EXPECT_EQ(nil, b->wide_nil());
}

TEST_F(TwoPlugins, ReleaseStringsMadeInEachOther) {
    a->release_narrow(b->make_narrow("made in b"));
    b->release_narrow(a->make_narrow("made in a"));
    a->release_wide(b->make_wide(L"made in b"));
    b->release_wide(a->make_wide(L"made in a"));
}

TEST_F(TwoPlugins, ReleaseEmptyStringsMadeInEachOther) {
    a->release_narrow(b->make_narrow(""));
    b->release_wide(a->make_wide(L""));
    EXPECT_EQ(-1, Narrow().GetData()->nRefs);
}

TEST_F(TwoPlugins, ShareABufferWithTheProgram) {
    Narrow* const made = a->make_narrow("shared");
    Narrow const copy = *made;
    EXPECT_EQ(made->GetData(), copy.GetData());
    EXPECT_EQ(2, copy.GetData()->nRefs);

    b->release_narrow(made);
    EXPECT_EQ(1, copy.GetData()->nRefs);
    EXPECT_STREQ("shared", copy.c_str());
}

TEST_F(TwoPlugins, ShareAWideBufferWithTheProgram) {
    Wide* const made = b->make_wide(L"shared");
    Wide const copy = *made;
    EXPECT_EQ(made->GetData(), copy.GetData());
    EXPECT_EQ(2, copy.GetData()->nRefs);

    a->release_wide(made);
    EXPECT_EQ(1, copy.GetData()->nRefs);
    EXPECT_STREQ(L"shared", copy.c_str());
}

}  // namespace
