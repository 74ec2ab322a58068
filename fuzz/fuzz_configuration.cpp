// Configuration files come from e-mail and USB sticks. Whatever their bytes, the loader's plan
// is consistent (nothing applied past a failed record, nothing at all without the signature),
// and a file that reads completely is the one the writer would write for that situation.
#include "configurations/configurationfile.h"
#include "fuzzcheck.h"

#include <cstdint>

using namespace configurations;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 4 * FileSize)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const LoadPlan plan = planLoad(bytes);
    FUZZ_CHECK(plan.failedRecord >= 0 && plan.failedRecord <= RecordCount);
    // A record is applied only when every record before it was read.
    const auto readUpTo = [&](int record) {
        return plan.signatureValid && (plan.failedRecord == 0 || plan.failedRecord > record);
    };
    FUZZ_CHECK(plan.listIndex.has_value() == readUpTo(2));
    FUZZ_CHECK(plan.amounts[0].has_value() == readUpTo(3));
    FUZZ_CHECK(plan.amounts[1].has_value() == readUpTo(4));
    for (int i = 0; i < 3; ++i)
        FUZZ_CHECK(plan.checked[i].has_value() == readUpTo(5 + i));
    FUZZ_CHECK(plan.isolated.has_value() == readUpTo(8));
    if (plan.listIndex)
        FUZZ_CHECK(*plan.listIndex >= 0 && *plan.listIndex <= 7);

    const auto decoded = decodeConfiguration(bytes);
    FUZZ_CHECK(decoded.has_value() == (plan.signatureValid && plan.failedRecord == 0));
    if (decoded) {
        const auto encoded = encodeConfiguration(*decoded);
        FUZZ_CHECK(encoded.has_value());
        FUZZ_CHECK(decodeConfiguration(*encoded) == decoded);
    }
    // A file that could not be opened reads nothing.
    const LoadPlan none = planLoad(std::nullopt);
    FUZZ_CHECK(none.failedRecord == 1 && !none.signatureValid);
    return 0;
}
