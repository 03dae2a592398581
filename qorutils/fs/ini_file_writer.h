// Private: INI files as pieces of text that are written one by one.

#ifndef QORUTILS_FS_INI_FILE_WRITER_H_
#define QORUTILS_FS_INI_FILE_WRITER_H_

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstring>
#include <memory>

#include "qorutils/fs/ini_text.h"
#include "qorutils/fs/platform_file.h"
#include "qorutils/text/qor_string.h"

namespace qor_settings {

// The results of writing are false when the system takes no bytes without calling it an error.
// On purpose: bytes that it refuses with an error count as written.
class IQorIniFileWriterImpl {
  public:
    virtual bool Open(wchar_t const* path) = 0;
    virtual bool Write(qor_text::CQorStringT<wchar_t> const& text) = 0;
    virtual bool WriteLine(qor_text::CQorStringT<wchar_t> const& text) = 0;

    virtual ~IQorIniFileWriterImpl() = default;

    // Hands what has been gathered to the system.
    virtual bool Flush() = 0;
};

// Gathers the pieces, so that few system calls write many of them.
template <typename T>
class TQorIniFileWriterImpl : public IQorIniFileWriterImpl {
  public:
    TQorIniFileWriterImpl() = default;
    TQorIniFileWriterImpl(TQorIniFileWriterImpl const&) = delete;
    TQorIniFileWriterImpl& operator=(TQorIniFileWriterImpl const&) = delete;
    ~TQorIniFileWriterImpl() override {
        if (file_ != -1) base::ClosePlatformFile(file_);
    }

    bool Open(wchar_t const* path) override {
        constexpr int kFlags = base::kFileCreateOrTruncate | base::kFileRead | base::kFileWrite;
        file_ = base::CreatePlatformFile(path, kFlags, nullptr, nullptr);
        return file_ != -1;
    }

    bool Write(qor_text::CQorStringT<wchar_t> const& text) override {
        qor_text::CQorStringT<T> const& encoded = text_.Encode(text);
        return Gather(encoded.c_str(), static_cast<std::size_t>(encoded.GetLength()));
    }

    bool WriteLine(qor_text::CQorStringT<wchar_t> const& text) override {
        static constexpr T kLineEnd[] = {'\r', '\n'};
        return Write(text) && Gather(kLineEnd, 2);
    }

    bool Flush() override {
        std::size_t const gathered = gathered_;
        gathered_ = 0;
        return Hand(block_.get(), gathered);
    }

  private:
    bool Gather(T const* text, std::size_t length) {
        if (length > kBlock - gathered_ && !Flush()) return false;
        if (length > kBlock) return Hand(text, length);
        std::memcpy(block_.get() + gathered_, text, length * sizeof(T));
        gathered_ += length;
        return true;
    }

    // Asks again after fewer bytes than given: whether the rest is an error decides the result.
    bool Hand(T const* text, std::size_t length) {
        char const* bytes = reinterpret_cast<char const*>(text);
        std::size_t left = length * sizeof(T);
        int written = 1;
        while (left > 0 && written > 0) {
            auto const block = static_cast<unsigned>(std::min<std::size_t>(left, INT_MAX));
            written = base::WritePlatformFile(file_, bytes, block);
            if (written <= 0) continue;
            bytes += written;
            left -= static_cast<std::size_t>(written);
        }
        return written != 0;
    }

    // From 64 KiB on, each that is freed would make malloc tidy up the heap of the whole program.
    static constexpr std::size_t kBlock = 16384 / sizeof(T);

    int file_ = -1;
    IniText<T> text_;
    std::size_t gathered_ = 0;
    std::unique_ptr<T[]> const block_{new T[kBlock]};
};

template <typename T>
constexpr std::size_t TQorIniFileWriterImpl<T>::kBlock;

}  // namespace qor_settings

#endif  // QORUTILS_FS_INI_FILE_WRITER_H_
