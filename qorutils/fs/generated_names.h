/// @file
/// Fresh file names: the next number that is free in a directory, and the next number of a counter
/// that outlives the process.

#ifndef QORUTILS_FS_GENERATED_NAMES_H_
#define QORUTILS_FS_GENERATED_NAMES_H_

#include <cstdint>

#include "qorutils/export.h"
#include "qorutils/text/qor_string.h"

namespace FileFuncs {

/// Counts the number at the end of name up until directory has no entry of that name with ext
/// behind it; returns the name, without ext. With "Rec02.wav" and "Rec03.wav" in the directory,
/// ("dir", "Rec01", ".wav") gives "Rec04". Leading zeros stay, as DoIncPtno() keeps them; a name
/// without a number starts at 1.
/// On purpose: name itself is never returned, whether or not there is such a file. Except that a
/// number too long for DoIncPtno(), which only some file systems allow in a name, stays as it is;
/// if that name is taken, too, the result is empty.
///
/// Folders count as entries, links as what they lead to, so that the name of a dangling link is
/// free. An empty directory is the working directory. All texts end at their first zero character.
/// A candidate that cannot be encoded as the process locale says, with the directory or the name,
/// is returned untested: no file can be made under it either.
///
/// Throws boost::filesystem::filesystem_error, a std::runtime_error, when the system cannot tell
/// whether a candidate exists (no permission to look into the directory, a name too long, a circle
/// of links), and std::bad_alloc. Nothing is reserved: others may take the name meanwhile.
QORUTILS_API qor_text::CQorStringT<wchar_t> NextDefaultName(
    qor_text::CQorStringT<wchar_t> const& directory, qor_text::CQorStringT<wchar_t> const& name,
    qor_text::CQorStringT<wchar_t> const& ext);

}  // namespace FileFuncs

/// Names numbered by a counter that is kept in a file beside them: numbering goes on from run to
/// run and starts at 1 again behind maxNumber.
///
///     SeqFileNames const logs(L"/var/log/survey", L"run", L".txt", 10);
///     logs.getNext();    // "/var/log/survey//run1.txt", ... "run10.txt", "run1.txt", ...
///
/// The counter file is `directory + "/" + prefix + ".seq.ini"`, with every `\` as `/`. It holds the
/// number handed out last, in decimal digits and nothing else.
class QORUTILS_API SeqFileNames {
  public:
    /// suffix is what stands behind the number, a dot included. With a maxNumber of 0 every number
    /// is 1.
    SeqFileNames(qor_text::CQorStringT<wchar_t> const& directory,
                 qor_text::CQorStringT<wchar_t> const& prefix,
                 qor_text::CQorStringT<wchar_t> const& suffix, std::uint32_t maxNumber);

    /// Counts up and returns the name, with its directory; texts end at their first zero character.
    /// It does not ask whether such a file exists.
    /// On purpose: two slashes stand behind the directory, and every `\` in it stays.
    /// On purpose: a name of 2048 characters or more comes out empty; it is counted all the same.
    ///
    /// The counter file's number is read as by `>>` in the classic locale: blanks and a sign before
    /// it and anything behind it are skipped, a negative one counts from 4294967296 downwards.
    /// Where there is none, or one that 32 bits cannot hold, numbering starts at 1.
    /// Nothing is reported: as long as the counter cannot be written, the same number is handed
    /// out. Two threads or processes that call at once may be given the same name.
    /// Throws std::bad_alloc.
    qor_text::CQorStringT<wchar_t> getNext() const;

    qor_text::CQorStringT<wchar_t> directory;  ///< as it was given
    qor_text::CQorStringT<wchar_t> prefix;     ///< what stands in front of the number
    qor_text::CQorStringT<wchar_t> suffix;     ///< what stands behind the number
    std::uint32_t maxNumber;                   ///< the highest number, after which 1 comes
};

#endif  // QORUTILS_FS_GENERATED_NAMES_H_
