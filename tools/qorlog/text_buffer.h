// Text that grows at its end and is used up at its beginning.

#ifndef QORUTILS_TOOLS_QORLOG_TEXT_BUFFER_H_
#define QORUTILS_TOOLS_QORLOG_TEXT_BUFFER_H_

#include <algorithm>
#include <cstddef>
#include <vector>

#include <boost/utility/string_ref.hpp>

namespace qorlog {

// Takes new memory only when a text is longer than any before.
class TextBuffer {
  public:
    // Where `size` more characters may be put. References to the text end here.
    char* Room(std::size_t size) {
        if (storage_.size() - end_ < size) MakeRoom(size);
        return storage_.data() + end_;
    }

    // So many have been put there.
    void Grow(std::size_t size) { end_ += size; }

    void DropFront(std::size_t size) {
        begin_ += size;
        if (begin_ == end_) begin_ = end_ = 0;
    }

    boost::string_ref Text() const { return {storage_.data() + begin_, end_ - begin_}; }

  private:
    void MakeRoom(std::size_t size) {
        std::copy(storage_.begin() + static_cast<std::ptrdiff_t>(begin_),
                  storage_.begin() + static_cast<std::ptrdiff_t>(end_), storage_.begin());
        end_ -= begin_;
        begin_ = 0;
        if (storage_.size() - end_ < size) storage_.resize((end_ + size) * 2);
    }

    std::vector<char> storage_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_TEXT_BUFFER_H_
