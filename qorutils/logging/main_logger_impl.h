// Private: the logger, with the line writer that every logging function ends in.

#ifndef QORUTILS_LOGGING_MAIN_LOGGER_IMPL_H_
#define QORUTILS_LOGGING_MAIN_LOGGER_IMPL_H_

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/recursive_mutex.hpp>

#include "qorutils/fs/platform_file.h"
#include "qorutils/logging/log_line.h"
#include "qorutils/logging/main_logger.h"
#include "qorutils/qorsys/qor_system.h"
#include "qorutils/text/qor_memory.h"
#include "qorutils/text/qor_string.h"

namespace qor_logging {

// Levels are sets of bits.
constexpr long kWrittenBit = 1;
constexpr long kEchoBit = 4;
constexpr long kAlwaysLevel = 7;
constexpr long kDebugLevel = 6;

// Callers log between a failing call and the use of its errno.
class KeptErrno {
  public:
    KeptErrno() = default;
    ~KeptErrno() { errno = value_; }
    KeptErrno(KeptErrno const&) = delete;
    KeptErrno& operator=(KeptErrno const&) = delete;

  private:
    int const value_ = errno;
};

class CQorLogger {
  public:
    CQorLogger() = default;
    ~CQorLogger();
    CQorLogger(CQorLogger const&) = delete;
    CQorLogger& operator=(CQorLogger const&) = delete;

    bool Writes(long level) const { return (static_cast<std::uint32_t>(level) & levelMask) != 0; }

    void Open(qor_text::CQorStringT<wchar_t> const& path);
    void WriteLine(long level, qor_text::CQorStringT<wchar_t> const& message);
    void Flush() const;
    qor_text::CQorStringT<wchar_t> OpenFileName();

    int fileHandle = -1;
    qor_text::CQorStringT<wchar_t> fileName;
    boost::recursive_mutex mutex;
    qor_text::CQorStringT<wchar_t> lineText;
    std::vector<qor_text::CQorStringT<wchar_t>> messages;  // never filled
    std::uint32_t startTicks = 0;
    std::uint32_t prevTicks = 0;
    std::uint32_t lastTicks = 0;
    bool isOpen = false;
    std::uint32_t levelMask = kWrittenBit;
    // Never filled, either: what is to be written is written at once from where it lies, so that a
    // flush, which takes no lock, never meets bytes that another thread is putting here.
    qor_vector<unsigned char> pending;

  private:
    void Write(void const* bytes, std::size_t size) const;
    void Compose(long level, qor_text::CQorStringT<wchar_t> const& message);
    void Echo() const;
};

inline CQorLogger::~CQorLogger() {
    if (Writes(kAlwaysLevel)) WriteLine(kAlwaysLevel, L"Logging finished");
    if (fileHandle != -1) base::ClosePlatformFile(fileHandle);
}

inline void CQorLogger::Open(qor_text::CQorStringT<wchar_t> const& path) {
    bool created = false;
    base::PlatformFileError error = base::kFileErrorFailed;
    fileHandle = base::CreatePlatformFile(path, base::kFileCreateOrTruncate | base::kFileWrite,
                                          &created, &error);
    isOpen = fileHandle != -1 && created && error == base::kFileOk;
    if (!isOpen) return;
    startTicks = prevTicks = lastTicks = CurrentTicks();
    fileName = path;
    Write("\xFF\xFE", 2);
}

inline void CQorLogger::WriteLine(long level, qor_text::CQorStringT<wchar_t> const& message) {
    if (!Writes(level)) return;
    boost::lock_guard<boost::recursive_mutex> const lock(mutex);
    prevTicks = lastTicks;
    lastTicks = CurrentTicks();
    Compose(level, message);
    if (isOpen)
        Write(lineText.c_str(), static_cast<std::size_t>(lineText.GetLength()) * sizeof(wchar_t));
    if ((level & kEchoBit) != 0) Echo();
}

// Without a lock, so that a failed check is on the device even if another thread never lets go.
inline void CQorLogger::Flush() const {
    if (isOpen) base::FlushPlatformFile(fileHandle);
}

inline qor_text::CQorStringT<wchar_t> CQorLogger::OpenFileName() {
    boost::lock_guard<boost::recursive_mutex> const lock(mutex);
    return isOpen ? fileName : qor_text::CQorStringT<wchar_t>();
}

// What the file does not take is lost.
inline void CQorLogger::Write(void const* bytes, std::size_t size) const {
    base::WritePlatformFile(fileHandle, bytes, static_cast<unsigned int>(size));
}

// Into the room that the lines before have left; a longer line makes room for itself once.
inline void CQorLogger::Compose(long level, qor_text::CQorStringT<wchar_t> const& message) {
    LinePrefix const prefix(lastTicks - startTicks, level);
    int const length = prefix.Length() + message.GetLength() + 2;
    wchar_t* to = lineText.GetBuffer(length);
    to = std::copy_n(prefix.Text(), prefix.Length(), to);
    to = std::copy_n(message.c_str(), message.GetLength(), to);
    std::copy_n(L"\r\n", 2, to);
    lineText.ReleaseBuffer(length);
}

// The test in front spares cutting pieces that nobody sees.
inline void CQorLogger::Echo() const {
    constexpr int kPieceLength = 250;
    if (isatty(STDOUT_FILENO) == 0) return;
    for (int rest = lineText.GetLength(); rest > 0; rest -= kPieceLength) {
        auto piece = lineText.Mid(lineText.GetLength() - rest, kPieceLength);
        piece.Replace(L'\0', L'.');
        OutputDebugString(piece);
    }
}

}  // namespace qor_logging

#endif  // QORUTILS_LOGGING_MAIN_LOGGER_IMPL_H_
