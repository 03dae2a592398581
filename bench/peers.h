// The strings that users would pick instead, where they are installed.

#ifndef QORUTILS_BENCH_PEERS_H_
#define QORUTILS_BENCH_PEERS_H_

#ifdef QORUTILS_BENCH_QT
#include <QtCore/QString>
#include <QtCore/QStringList>
#endif

#ifdef QORUTILS_BENCH_WX
#include <wx/string.h>
#include <wx/tokenzr.h>
#endif

#endif  // QORUTILS_BENCH_PEERS_H_
