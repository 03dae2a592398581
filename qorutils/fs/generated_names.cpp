#include "qorutils/fs/generated_names.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>
#include <locale>

#include "qorutils/formats/number_text.h"
#include "qorutils/fs/boost_paths.h"
#include "qorutils/text/safe_format.h"

using FileFuncs::boost_paths::BoostPath;
using qor_text::CQorStringT;

namespace FileFuncs {

CQorStringT<wchar_t> NextDefaultName(CQorStringT<wchar_t> const& directory,
                                     CQorStringT<wchar_t> const& name,
                                     CQorStringT<wchar_t> const& ext) {
    bool const isKnown = CanBeNarrowed(directory);
    BoostPath const folder = NarrowPath(directory);
    CQorStringT<wchar_t> result(name.c_str());
    bool isCounted;
    do {
        isCounted = qor_formats::DoIncPtno(result, 1) != 0;
        BoostPath const candidate = NarrowPath(result + ext.c_str());
        if (!isKnown || candidate.empty() || !boost::filesystem::exists(folder / candidate))
            return result;
    } while (isCounted);
    return {};
}

}  // namespace FileFuncs

namespace {

BoostPath CounterPath(SeqFileNames const& names) {
    CQorStringT<wchar_t> const file =
        CQorStringT<wchar_t>(names.directory.c_str()) + L"/" + names.prefix.c_str() + L".seq.ini";
    CQorStringT<char> narrow(file.c_str());
    narrow.Replace('\\', '/');
    return narrow.c_str();
}

// In the classic locale: the program's may group digits.
template <typename Stream>
void OpenCounter(Stream& stream, BoostPath const& file) {
    stream.imbue(std::locale::classic());
    stream.open(file);
}

std::uint32_t ReadCounter(BoostPath const& file) {
    boost::filesystem::ifstream stream;
    OpenCounter(stream, file);
    std::uint32_t counter = 0;
    return stream >> counter ? counter : 0;
}

void WriteCounter(BoostPath const& file, std::uint32_t counter) {
    boost::filesystem::ofstream stream;
    OpenCounter(stream, file);
    stream << counter;
}

}  // namespace

SeqFileNames::SeqFileNames(CQorStringT<wchar_t> const& directoryOfNames,
                           CQorStringT<wchar_t> const& beforeNumber,
                           CQorStringT<wchar_t> const& behindNumber, std::uint32_t lastNumber)
    : directory(directoryOfNames),
      prefix(beforeNumber),
      suffix(behindNumber),
      maxNumber(lastNumber) {}

CQorStringT<wchar_t> SeqFileNames::getNext() const {
    BoostPath const file = CounterPath(*this);
    std::uint32_t counter = ReadCounter(file);
    counter = maxNumber > counter ? counter + 1 : 1;
    WriteCounter(file, counter);
    return qor_text::qor_printf(L"%ls//%ls%u%ls", directory.c_str(), prefix.c_str(), counter,
                                suffix.c_str());
}
