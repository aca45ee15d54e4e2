#include "ToolProgram.h"

#include <FeedLoader.h>
#include <ProgramStart.h>

#include <clocale>

void startTool(const QString& name)
{
    nameProgram(name);
    static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8"));
}

std::optional<rivo::feed::Feed> readFeed(const QString& path,
                                         const rivo::feed::FeedOptions& options)
{
    rivo::feed::FeedResult result = rivo::feed::loadFeed(path, options);
    complain(result.noticeLines());
    complain(result.problemLines());
    return std::move(result.feed);
}
