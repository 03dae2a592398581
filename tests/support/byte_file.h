// Open files with given bytes: one without a name, which can seek, and a pipe, which cannot.
#ifndef QORUTILS_TESTS_SUPPORT_BYTE_FILE_H_
#define QORUTILS_TESTS_SUPPORT_BYTE_FILE_H_

#include <unistd.h>

#include <cstdio>
#include <stdexcept>
#include <string>

// A file that vanishes when it is closed. Its position is at the start.
class ByteFile {
  public:
    explicit ByteFile(std::string const& content = std::string()) : stream_(std::tmpfile()) {
        if (stream_ == nullptr) throw std::runtime_error("no temporary file");
        Set(content);
    }
    ~ByteFile() { std::fclose(stream_); }
    ByteFile(ByteFile const&) = delete;
    ByteFile& operator=(ByteFile const&) = delete;

    int descriptor() const { return fileno(stream_); }

    // Has the system buffer nothing: what is written arrives, or fails, at once.
    std::FILE* stream() {
        std::setvbuf(stream_, nullptr, _IONBF, 0);
        return stream_;
    }

    void Set(std::string const& content) {
        if (ftruncate64(descriptor(), 0) != 0) throw std::runtime_error("cannot truncate");
        WriteAt(0, content);
        Seek(0);
    }

    void WriteAt(long long position, std::string const& bytes) {
        ssize_t const written = pwrite64(descriptor(), bytes.data(), bytes.size(), position);
        if (written != static_cast<ssize_t>(bytes.size())) throw std::runtime_error("cannot write");
    }

    std::string Content() const {
        std::string content(static_cast<std::size_t>(lseek64(descriptor(), 0, SEEK_END)), '\0');
        ssize_t const n = pread64(descriptor(), &content[0], content.size(), 0);
        if (n != static_cast<ssize_t>(content.size())) throw std::runtime_error("cannot read");
        return content;
    }

    void Seek(long long position) { lseek64(descriptor(), position, SEEK_SET); }
    long long Position() const { return lseek64(descriptor(), 0, SEEK_CUR); }

  private:
    std::FILE* stream_;
};

// The reading end of a pipe that holds the bytes, at most 64 KiB. The writing end stays open until
// it is closed or the object goes.
class BytePipe {
  public:
    explicit BytePipe(std::string const& content) {
        if (pipe(ends_) != 0) throw std::runtime_error("no pipe");
        Write(content);
    }
    ~BytePipe() {
        CloseWriting();
        close(ends_[0]);
    }
    BytePipe(BytePipe const&) = delete;
    BytePipe& operator=(BytePipe const&) = delete;

    int descriptor() const { return ends_[0]; }
    int writingEnd() const { return ends_[1]; }

    void Write(std::string const& bytes) {
        ssize_t const written = write(ends_[1], bytes.data(), bytes.size());
        if (written != static_cast<ssize_t>(bytes.size())) throw std::runtime_error("pipe is full");
    }
    void CloseWriting() {
        if (ends_[1] != -1) close(ends_[1]);
        ends_[1] = -1;
    }

  private:
    int ends_[2];
};

#endif  // QORUTILS_TESTS_SUPPORT_BYTE_FILE_H_
