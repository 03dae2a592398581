#include "qorutils/fs/cfile.h"

#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>

#include "qorutils/fs/file_funcs.h"
#include "qorutils/fs/system_calls.h"
#include "qorutils/logging/checks.h"

using qor_text::CQorStringT;

namespace base {

namespace {

char const kReportedAs[] = "qorutils/fs/platform_file";

[[noreturn]] void Throw(char const* operation, int line) {
    int const error = errno;
    CQorStringT<char> text;
    text.Format("[%s:%d] %s: %d", kReportedAs, line, operation, error);
    throw std::runtime_error(text.c_str());
}

void CheckIsOpen(int file, int line) {
    if (file == -1) qor_logging::qor_err_log(kReportedAs, line, "");
}

bool IsWhole(int transferred, unsigned int count) {
    return transferred >= 0 && static_cast<unsigned int>(transferred) == count;
}

// Cuts the text in two before index: returns the first part, the second stays.
CQorStringT<wchar_t> TakeFront(CQorStringT<wchar_t>& text, int index) {
    CQorStringT<wchar_t> front = text.Left(index);
    text.Delete(0, index);
    return front;
}

// Returns the second part, the first stays.
CQorStringT<wchar_t> TakeBack(CQorStringT<wchar_t>& text, int index) {
    CQorStringT<wchar_t> back = text.Mid(index);
    text.Truncate(index);
    return back;
}

int ExtensionStart(CQorStringT<wchar_t> const& path) {
    int const dot = path.ReverseFind(L'.');
    return dot > path.ReverseFind(L'\\') ? dot : path.GetLength();
}

void AppendPiece(CQorStringT<wchar_t>& path, wchar_t const* piece) {
    if (piece == nullptr) return;
    if (!path.IsEmpty()) path += L'\\';
    path += piece;
}

void AppendExtension(CQorStringT<wchar_t>& path, wchar_t const* extension) {
    if (extension == nullptr || *extension == L'\0') return;
    if (*extension != L'.') path += L'.';
    path += extension;
}

}  // namespace

bool CFile::Open(CQorStringT<wchar_t> const& name, int flags, bool* created,
                 PlatformFileError* error) {
    file_ = CreatePlatformFile(name, flags, created, error);
    return file_ != -1;
}

bool CFile::OpenForReading(CQorStringT<wchar_t> const& name) {
    return Open(name, kFileOpenExisting | kFileRead, nullptr, nullptr);
}

bool CFile::OpenForWriting(CQorStringT<wchar_t> const& name) {
    return Open(name, kFileCreateOrTruncate | kFileWrite, nullptr, nullptr);
}

unsigned int CFile::Read(void* buffer, unsigned int count) {
    CheckIsOpen(file_, __LINE__);
    if (!IsWhole(ReadPlatformFile(file_, buffer, count), count)) Throw("Read", __LINE__);
    return count;
}

unsigned int CFile::Write(void const* buffer, unsigned int count) {
    CheckIsOpen(file_, __LINE__);
    if (!IsWhole(WritePlatformFile(file_, buffer, count), count)) Throw("Write", __LINE__);
    return count;
}

void CFile::Close() {
    if (file_ == -1) return;
    bool const isClosed = ClosePlatformFile(file_);
    file_ = -1;
    if (!isClosed) Throw("CloseHandle", __LINE__);
}

bool CFile::Flush() {
    if (!FlushPlatformFile(file_)) Throw("FlushFileBuffers", __LINE__);
    return true;
}

long long CFile::Seek(long long offset, unsigned long from) {
    return lseek64(file_, offset, static_cast<int>(from));
}

long long CFile::SeekToBegin() {
    return Seek(0, kFromBegin);
}

long long CFile::SeekToEnd() {
    return Seek(0, kFromEnd);
}

int CFile::SetLength(unsigned long long length) {
    Seek(static_cast<long long>(length), kFromBegin);
    return Truncate32(file_, static_cast<std::int32_t>(length));
}

unsigned long long CFile::GetLength() const {
    PlatformFileInfo info;
    return GetPlatformFileInfo(file_, &info) ? static_cast<unsigned long long>(info.size) : 0;
}

unsigned long long CFile::GetPosition() const {
    return static_cast<unsigned long long>(lseek64(file_, 0, SEEK_CUR));
}

bool CFile::Rename(wchar_t const* oldName, wchar_t const* newName) {
    if (!FileFuncs::MoveFile(oldName, newName)) Throw("MoveFile", __LINE__);
    return true;
}

void CFile::Remove(wchar_t const* name) {
    if (unlink(CQorStringT<char>(name).c_str()) != 0) Throw("DeleteFile", __LINE__);
}

bool CFile::FileExists(wchar_t const* name, bool& isDirectory) {
    bool const exists = FileFuncs::FileExists(name);
    isDirectory = exists && FileFuncs::IsDirExist(name);
    return exists;
}

bool CFile::FileExists(wchar_t const* name) {
    return FileFuncs::FileExists(name);
}

long long CFile::GetLength(wchar_t const* name) {
    long long length = -1;
    return FileFuncs::GetFileLength(name, length) ? length : -1;
}

void CFile::GetModuleFileName(int, CQorStringT<wchar_t>& result, bool) {
    result.Empty();
}

void CFile::GetTempPath(CQorStringT<wchar_t>& result) {
    char const* const directory = std::getenv("TMPDIR");
    result = directory != nullptr ? directory : "/tmp";
}

void CFile::GetTempFileName(wchar_t const*, wchar_t const*, unsigned int,
                            CQorStringT<wchar_t>& result) {
    result.Empty();
}

void CFile::SplitPath(wchar_t const* path, CQorStringT<wchar_t>& drive, CQorStringT<wchar_t>& dir,
                      CQorStringT<wchar_t>& fname, CQorStringT<wchar_t>& ext) {
    CQorStringT<wchar_t> rest(path);
    rest.Replace(L'/', L'\\');
    drive = TakeFront(rest, rest.Find(L':') + 1);
    ext = TakeBack(rest, ExtensionStart(rest));
    fname = TakeBack(rest, rest.ReverseFind(L'\\') + 1);
    dir = rest;
}

void CFile::MakePath(CQorStringT<wchar_t>& result, wchar_t const* drive, wchar_t const* dir,
                     wchar_t const* fname, wchar_t const* ext) {
    CQorStringT<wchar_t> path(drive);
    AppendPiece(path, dir);
    AppendPiece(path, fname);
    AppendExtension(path, ext);
    path.Replace(L'/', L'\\');
    while (path.Replace(L"\\\\", L"\\") != 0) {
    }
    result = path;
}

void CFile::UpdateFileName(wchar_t const* path, wchar_t const* newName,
                           CQorStringT<wchar_t>& result) {
    if (path == nullptr || *path == L'\0') {
        result = newName;
        return;
    }
    CQorStringT<wchar_t> drive;
    CQorStringT<wchar_t> dir;
    CQorStringT<wchar_t> name;
    CQorStringT<wchar_t> extension;
    SplitPath(path, drive, dir, name, extension);
    MakePath(result, drive, dir, newName, nullptr);
}

}  // namespace base
