// The input is an archive, as an operator's back office might send it.

#include "FeedChecks.h"
#include "Fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QString path = fuzzing::folder() + QStringLiteral("/feed.zip");
    fuzzing::write(path, fuzzing::bytes(data, size));
    fuzzing::checkFeed(rivo::feed::loadFeed(path, fuzzing::tightOptions()), path);
    return 0;
}
