// Statements and corrections arrive as RTF from any word processor: any bytes read into a
// document without crash or hang, and what the program writes reads back to the same document.
#include "fuzzcheck.h"
#include "platform/rtfreader.h"
#include "platform/rtfwriter.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 256 * 1024)
        return 0;
    namespace rtf = platform::rtf;
    rtf::ReadReport report;
    const rtf::Document doc =
        rtf::read(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)), &report);
    const QByteArray written = rtf::write(doc);
    for (const char c : written)
        FUZZ_CHECK(static_cast<unsigned char>(c) < 0x80); // the writer writes plain ASCII
    rtf::ReadReport again;
    const rtf::Document back = rtf::read(written, &again);
    FUZZ_CHECK(again.rtfHeader && !again.unterminated && !again.tooDeep);
    FUZZ_CHECK(back == doc);
    return 0;
}
